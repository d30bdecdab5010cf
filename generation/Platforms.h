#pragma once

#include <QString>

#include <array>
#include <span>

/// A platform that icons are made for. Its number is the index of its dictionary in the size catalogue.
enum class Platform { Iphone, Ipad, Watch, Mac, Android };

/// The table of the platforms, and of the choices that the user has.
namespace Platforms {

/// Every platform once, in the catalogue's order.
inline constexpr std::array all{Platform::Iphone, Platform::Ipad, Platform::Watch, Platform::Mac,
                                Platform::Android};

/// The lower-case word that names the platform's folder.
QString idiom(Platform platform);

/// The folder of an idiom's PNG files, relative to the output folder: "ipad/AppIcon.appiconset",
/// "android/icons". For an unknown idiom the second component is "AppIcon.appiconset".
QString folder(const QString& idiom);

/// Whether the icon container Application.icns follows the platform's PNG files.
bool hasContainer(Platform platform);

/// A choice that the user has.
struct Choice {
    const char* word;                    ///< its word on the command line
    std::span<const Platform> platforms; ///< in the order of their generation
};

/// The choices in the order of the main window's list. A choice's index is its platform index.
std::span<const Choice> choices();

/// The platforms of a platform index, in the order of their generation. An index without a choice acts as 0.
std::span<const Platform> ofIndex(int index);

/// The index of the choice that has `platform` as its only platform.
int indexOf(Platform platform);

} // namespace Platforms
