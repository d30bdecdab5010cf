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

/// Which icons each platform needs and at what size: the property list "ImageSizeFile.plist". Its root is an
/// array whose first five elements are the dictionaries of the platforms, in the order of `Platform`; each
/// maps a key to an entry with the strings "Dimensions" (the file's pixel size, as "{w, h}") and "Name" (its
/// base name).
class IconSizeCatalogue {
  public:
    /// Its name among the resources.
    static constexpr char resourceName[] = "ImageSizeFile.plist";

    /// No icons for any platform.
    IconSizeCatalogue() = default;

    /// The catalogue in `bundle` as it is now. NotFound or NotReadable where there is no array to be had;
    /// Malformed for an array that does not hold what a catalogue must: fewer than five elements, or
    /// something of another type in a dictionary's or string's place.
    static Result<IconSizeCatalogue> load(const Bundle& bundle);

    const QVariantMap& dictionary(Platform platform) const {
        return m_dictionaries[static_cast<std::size_t>(platform)];
    }
    QStringList keys(Platform platform) const { return dictionary(platform).keys(); }

    /// An entry's pixel size; 0 × 0 without "Dimensions".
    static QSizeF dimensions(const QVariantMap& entry);
    /// An entry's base name; "(null)" without "Name".
    static QString name(const QVariantMap& entry);

  private:
    static Result<IconSizeCatalogue> parsed(const QByteArray& bytes);

    std::array<QVariantMap, Platforms::all.size()> m_dictionaries;
};

/// The first two numbers in `text` as width and height; 0 × 0 where it holds fewer.
QSizeF sizeFromString(const QString& text);
