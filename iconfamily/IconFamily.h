#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsTypes.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/image/Image.h"
#include "platform/services/Pasteboard.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// An icon family: a block of icns data that can be built element by element, loaded, written and read back.
/// It owns its block. Not thread-safe.
///
/// A factory function that fails returns null without a message; log lines are written only when elements are
/// stored. If memory is short, an operation fails as it does for other causes: it returns null, false or no
/// value.
class IconFamily {
  public:
    /// An empty family, without even a header.
    static std::unique_ptr<IconFamily> iconFamily();
    static std::unique_ptr<IconFamily> init();

    /// A family of any bytes, unchecked. Bytes that are not icns data cause failures when elements are stored
    /// or read.
    static std::unique_ptr<IconFamily> initWithData(const QByteArray& data);

    /// A family from an icns file. Null if the file does not begin like one, or has fewer bytes than its
    /// header states. Bytes after the family are left out.
    static std::unique_ptr<IconFamily> iconFamilyWithContentsOfFile(const QString& path);
    static std::unique_ptr<IconFamily> initWithContentsOfFile(const QString& path);

    /// The icon that the file browser shows for a file, and the system icon of a type. Always null: only
    /// macOS's icon services have these icons.
    static std::unique_ptr<IconFamily> iconFamilyWithIconOfFile(const QString& path);
    static std::unique_ptr<IconFamily> initWithIconOfFile(const QString& path);
    static std::unique_ptr<IconFamily> iconFamilyWithSystemIcon(FourCharCode type);
    static std::unique_ptr<IconFamily> initWithSystemIcon(FourCharCode type);

    /// Takes over `handle` unchecked.
    static std::unique_ptr<IconFamily> iconFamilyWithIconFamilyHandle(QByteArray handle);
    static std::unique_ptr<IconFamily> initWithIconFamilyHandle(QByteArray handle);

    /// A copy of the whole block.
    QByteArray data() const { return hIconFamily; }

    /// Writes the block into the file in place. Returns whether that succeeded.
    bool writeToFile(const QString& path) const;

    /// Stores the bitmap as the element of that type, converted as the type needs: 'ic04' to 'ic14' and
    /// 'is32', 'il32', 'ih32', 'it32' as uncompressed A, R, G, B samples; 's8mk', 'l8mk', 'h8mk', 't8mk' as
    /// one byte of coverage; 'ics8', 'icl8', 'ich8' as one byte of one channel; 'ics#', 'ICN#', 'ich#' as one
    /// bit, stored twice. False, and no change, for any other type, a null bitmap, a bitmap of another size,
    /// or a failed conversion or storing; the last two cases are logged.
    bool setIconFamilyElement(FourCharCode type, const BitmapImageRep* fromBitmapImageRep);

    /// Adds the element of that type to the current ResourceFile, under the resource number `asResID` and
    /// without a name. Returns whether the family has a non-empty element of that type, not whether it became
    /// a resource.
    bool addResourceType(FourCharCode type, qint16 asResID) const;
    /// The same, with the cause of a failure: NotFound if the element is missing or empty, Damaged if the
    /// block is not icns data, OutOfMemory.
    Result<Done> addElement(FourCharCode type, qint16 asResID) const;

    /// The element of that type as a bitmap: alpha first, marked as premultiplied, with the stored bytes
    /// unchanged. The older types take their alpha from their mask, which is ORed into the stored alpha;
    /// without a mask they are opaque. Null for other types, and if the element is missing or too short. Of
    /// an element that is too long, only the beginning is used.
    std::unique_ptr<BitmapImageRep> bitmapImageRepWithAlphaForIconFamilyElement(FourCharCode type) const;

    /// Pasteboards. The block is written under both of its pasteboard types. Bytes that are read are not
    /// checked.
    static QStringList readableTypesForPasteboard(const Pasteboard& pasteboard);
    /// Always 0: the data are read as bytes.
    static int readingOptionsForType(const QString& type, const Pasteboard& pasteboard);
    /// Whether one of the types is there. Its bytes are not checked: no bytes are an empty family.
    static bool canInitWithPasteboard(const Pasteboard& pasteboard);
    /// `ofType` is ignored.
    static std::unique_ptr<IconFamily> initWithPasteboardPropertyList(const QByteArray& propertyList,
                                                                      const QString& ofType);
    QStringList writableTypesForPasteboard(const Pasteboard& pasteboard) const;
    QByteArray pasteboardPropertyListForType(const QString& type) const;
    /// A family from the data of the first readable type on the pasteboard; null if there is none.
    static std::unique_ptr<IconFamily> iconFamilyFromPasteboard(const Pasteboard& pasteboard);
    /// Replaces the contents of the pasteboard with the family.
    void writeToPasteboard(Pasteboard& pasteboard) const;

    /// How a picture is resampled. The values are those of the platform's setting. The default is High.
    enum class ImageInterpolation { Default = 0, None = 1, Low = 2, High = 3, Medium = 4 };

    /// A family of `image` in the sizes 512, 256, 128, 48, 32 and 16 ('ic09', 'ic08', 'ic07', 'ic06', 'ic05',
    /// 'ic04'), made from one rendering of 1024 pixels. Null for an image without anything to draw. The
    /// 1024-pixel picture itself can't be stored; this is logged each time.
    static std::unique_ptr<IconFamily> iconFamilyWithThumbnailsOfImage(const Image& image);
    static std::unique_ptr<IconFamily>
    iconFamilyWithThumbnailsOfImage(const Image& image, ImageInterpolation usingImageInterpolation);
    static std::unique_ptr<IconFamily> initWithThumbnailsOfImage(const Image& image);
    static std::unique_ptr<IconFamily> initWithThumbnailsOfImage(const Image& image,
                                                                 ImageInterpolation usingImageInterpolation);

    /// `image` at the largest size that fits into a transparent square of `toIconWidth` pixels, centred. A
    /// bitmap's size is its size in pixels; of several bitmaps the largest one is used. Null if there is
    /// nothing to draw or the square can't be made.
    static Image resampleImage(const Image& image, qint32 toIconWidth,
                               ImageInterpolation usingImageInterpolation);

    /// An image with one representation for each element that holds a picture of a known format, in the
    /// family's order. Its size in pixels is that of the largest picture. Stored colours are taken as
    /// straight, so that translucent ones look as they did before they were stored. A null image if there is
    /// no such element.
    Image imageWithAllReps() const;

    // Custom icons, in the ForkStore in use. If the store cannot keep forks, they return false and touch
    // nothing. Each operation ends at the first step that fails; the steps before it stay done. If `error` is
    // not null, it is filled by the steps named below and by no others.

    /// Makes the family the custom icon of a file and keeps the file's modification date. A missing file is
    /// made. If the date can't be read, `error` is filled and the operation goes on. `withCompatibility` also
    /// stores the elements that old systems show; it has an effect only in the overload with `error`.
    bool setAsCustomIconForFile(const QString& path) const;
    bool setAsCustomIconForFile(const QString& path, bool withCompatibility) const;
    bool setAsCustomIconForFile(const QString& path, bool withCompatibility, Error* error) const;
    /// Makes the family the custom icon of a folder, in a new invisible file "Icon\r" in it. `error` is
    /// filled if an older "Icon\r" could not be removed.
    bool setAsCustomIconForDirectory(const QString& path) const;
    bool setAsCustomIconForDirectory(const QString& path, bool withCompatibility) const;
    bool setAsCustomIconForDirectory(const QString& path, bool withCompatibility, Error* error) const;

    /// Removes the custom icon of a file that has a resource fork. Elements that `withCompatibility` added
    /// stay.
    static bool removeCustomIconFromFile(const QString& path);
    /// Removes the custom icon of a folder, with its file "Icon\r". `error` is filled if that file could not
    /// be removed.
    static bool removeCustomIconFromDirectory(const QString& path, Error* error = nullptr);

    // The conversions of `setIconFamilyElement`. Each takes a bitmap of `requiredPixelSize` squared. For any
    // other size, and for an unsupported shape, there is no value; an unsupported shape is logged. Rows of
    // the result are packed.

    /// A, R, G, B, straight, from the bitmap's raster image. Takes 3 samples in 24 bits (their bytes come out
    /// as G, R, 255, B) or 4 samples in 32 bits, 8 bits each.
    static std::optional<QByteArray> get32BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                    qint32 requiredPixelSize);
    /// The last byte of each pixel. Takes the same shapes.
    static std::optional<QByteArray> get8BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);
    /// Of a 32-bit pixel the fourth byte, of an 8-bit pixel its only byte, of a 24-bit pixel 255.
    static std::optional<QByteArray> get8BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);
    /// One bit per pixel, the most significant first, and then all bits again. The bit is set if the pixel's
    /// first byte is not 0. It is always set for 24-bit pixels; 1-bit pixels are copied. No value either if
    /// the width is not a multiple of 8.
    static std::optional<QByteArray> get1BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);

  private:
    explicit IconFamily(QByteArray handle) : hIconFamily(std::move(handle)) {}

    QByteArray hIconFamily;
};
