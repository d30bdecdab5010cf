#pragma once

#include "base/Result.h"
#include "generation/Platforms.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <array>
#include <cstddef>

class Bundle;

/// The icons of each platform and their sizes, from the property list "ImageSizeFile.plist". The first five
/// elements of its root array are the dictionaries of the platforms, in the order of `Platform`. A dictionary
/// maps a key to an entry with the strings "Dimensions" (the file's pixel size, as "{w, h}") and "Name" (its
/// base name).
class IconSizeCatalogue {
  public:
    /// The file's name among the resources.
    static constexpr char resourceName[] = "ImageSizeFile.plist";

    /// A catalogue without icons.
    IconSizeCatalogue() = default;

    /// Loads the catalogue from `bundle`. If there is no array, an error with any code but Malformed; its
    /// sentence says whether the file can't be read or is not a size catalogue. Malformed if the array has
    /// fewer than five elements, or if a dictionary or string in it has another type.
    static Result<IconSizeCatalogue> load(const Bundle& bundle);

    const QVariantMap& dictionary(Platform platform) const { ///< maps keys to entries
        return m_dictionaries[static_cast<std::size_t>(platform)];
    }
    QStringList keys(Platform platform) const { return dictionary(platform).keys(); } ///< in their order

    /// An entry's pixel size; 0 × 0 without "Dimensions".
    static QSizeF dimensions(const QVariantMap& entry);
    /// Tells the user why an entry has no size. Empty if it has one.
    static QString sizeFault(const QVariantMap& entry);
    /// An entry's base name; "(null)" without "Name".
    static QString name(const QVariantMap& entry);

  private:
    static Result<IconSizeCatalogue> parsed(const QByteArray& bytes);

    std::array<QVariantMap, Platforms::all.size()> m_dictionaries;
};

/// The first two numbers in `text` as width and height; 0 × 0 if there are fewer. A number that is too large
/// for a double is infinite. A number that is too close to 0 is 0.
QSizeF sizeFromString(const QString& text);
