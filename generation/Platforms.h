#pragma once

#include <QString>

#include <array>
#include <span>

/// A platform that icons are made for. Its number is the place of its dictionary in the size catalogue.
enum class Platform { Iphone, Ipad, Watch, Mac, Android };

/// The one table of the platforms, and of the choices among them that a person is given.
namespace Platforms {

/// Every platform once, in the catalogue's order.
inline constexpr std::array all{Platform::Iphone, Platform::Ipad, Platform::Watch, Platform::Mac,
                                Platform::Android};

/// The idiom of a platform: the lower-case word that names its folder.
QString idiom(Platform platform);

/// The folder of an idiom's PNG files, relative to the output folder: "ipad/AppIcon.appiconset",
/// "android/icons". A word that is no idiom of the table has the folder "AppIcon.appiconset" too.
QString folder(const QString& idiom);

/// Whether the icon container Application.icns follows the platform's PNG files.
bool hasContainer(Platform platform);

/// What a person can choose.
struct Choice {
    const char* word;                    ///< on the command line
    std::span<const Platform> platforms; ///< in the order in which they are made
};

/// The choices in the order of the main window's list: a choice's place is its platform index.
std::span<const Choice> choices();

/// The platforms of a platform index, in the order in which they are made. An index without a choice acts as
/// 0.
std::span<const Platform> ofIndex(int index);

/// The platform index of the choice that is `platform` alone.
int indexOf(Platform platform);

} // namespace Platforms
