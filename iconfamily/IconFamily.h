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

/// One icon family: a block of icns data that can be built element by element, loaded, written, and read
/// back. It owns its block and shares it with nobody. One thread at a time.
///
/// What constructs one answers null where it fails, without a message; only storing elements writes log
/// lines. Where memory is short an operation fails as it does for other causes: null, false, or no value.
class IconFamily {
  public:
    /// An empty family: not even a header.
    static std::unique_ptr<IconFamily> iconFamily();
    static std::unique_ptr<IconFamily> init();

    /// A family of any bytes at all. That they are no icns data shows only when elements are stored or read.
    static std::unique_ptr<IconFamily> initWithData(const QByteArray& data);

    /// The icns file of that name: null unless its header and its length are those of one.
    static std::unique_ptr<IconFamily> iconFamilyWithContentsOfFile(const QString& path);
    static std::unique_ptr<IconFamily> initWithContentsOfFile(const QString& path);

    /// The icon that the file browser shows for the file of that name, and the system's icon of that type:
    /// null, since only macOS's icon services know either.
    static std::unique_ptr<IconFamily> iconFamilyWithIconOfFile(const QString& path);
    static std::unique_ptr<IconFamily> initWithIconOfFile(const QString& path);
    static std::unique_ptr<IconFamily> iconFamilyWithSystemIcon(FourCharCode type);
    static std::unique_ptr<IconFamily> initWithSystemIcon(FourCharCode type);

    /// Takes over `handle`, unchecked.
    static std::unique_ptr<IconFamily> iconFamilyWithIconFamilyHandle(QByteArray handle);
    static std::unique_ptr<IconFamily> initWithIconFamilyHandle(QByteArray handle);

    /// A copy of the whole block.
    QByteArray data() const { return hIconFamily; }

    /// Writes the block into the file of that name, in place; whether that succeeded.
    bool writeToFile(const QString& path) const;

    /// Stores the bitmap as the element of that type, with the conversion that the type asks for: 'ic04' to
    /// 'ic14' and 'is32', 'il32', 'ih32', 'it32' as plain A, R, G, B samples, 's8mk', 'l8mk', 'h8mk', 't8mk'
    /// as a byte of coverage, 'ics8', 'icl8', 'ich8' as a byte of one channel, 'ics#', 'ICN#', 'ich#' as a
    /// bit, twice. False, and no change, for any other type, without a bitmap, for one of another size, or
    /// where it can't be converted or stored; the last two are logged.
    bool setIconFamilyElement(FourCharCode type, const BitmapImageRep* fromBitmapImageRep);

    /// Adds the element of that type to the resources of the file that is current (ResourceFile), under that
    /// number and without a name. Whether there is such an element that is not empty: what becomes of the
    /// resource is not asked for.
    bool addResourceType(FourCharCode type, qint16 asResID) const;
    /// The same with the cause: NotFound where there is no such element or it is empty, Damaged where the
    /// block is no icns data, OutOfMemory.
    Result<Done> addElement(FourCharCode type, qint16 asResID) const;

    /// The element of that type as a bitmap: alpha first, said to be premultiplied, with the stored bytes as
    /// they are. The older types take their alpha from their mask, which is ORed into what is stored; without
    /// a mask they are opaque. Null for other types and where the element is missing or too short; of one
    /// that is too long the beginning counts.
    std::unique_ptr<BitmapImageRep> bitmapImageRepWithAlphaForIconFamilyElement(FourCharCode type) const;

    // Pasteboards. What is put there is the block, under both of its types; what is taken from there is
    // unchecked.
    static QStringList readableTypesForPasteboard(const Pasteboard& pasteboard);
    /// 0: as bytes.
    static int readingOptionsForType(const QString& type, const Pasteboard& pasteboard);
    static bool canInitWithPasteboard(const Pasteboard& pasteboard);
    /// `ofType` is ignored.
    static std::unique_ptr<IconFamily> initWithPasteboardPropertyList(const QByteArray& propertyList,
                                                                      const QString& ofType);
    QStringList writableTypesForPasteboard(const Pasteboard& pasteboard) const;
    QByteArray pasteboardPropertyListForType(const QString& type) const;
    /// The family there, of the first readable type; null without one.
    static std::unique_ptr<IconFamily> iconFamilyFromPasteboard(const Pasteboard& pasteboard);
    /// Puts the family in the place of what is there.
    void writeToPasteboard(Pasteboard& pasteboard) const;

    /// How a picture is resampled; the values are those of the platform's setting. Without another wish it is
    /// high.
    enum class ImageInterpolation { Default = 0, None = 1, Low = 2, High = 3, Medium = 4 };

    /// A family of `image` in all sizes from 512 down to 16 ('ic09', 'ic08', 'ic07', 'ic06', 'ic05', 'ic04'),
    /// made from one rendering of 1024 pixels. Null for an image without anything to draw. That 1024 pixels
    /// are no element is logged each time.
    static std::unique_ptr<IconFamily> iconFamilyWithThumbnailsOfImage(const Image& image);
    static std::unique_ptr<IconFamily>
    iconFamilyWithThumbnailsOfImage(const Image& image, ImageInterpolation usingImageInterpolation);
    static std::unique_ptr<IconFamily> initWithThumbnailsOfImage(const Image& image);
    static std::unique_ptr<IconFamily> initWithThumbnailsOfImage(const Image& image,
                                                                 ImageInterpolation usingImageInterpolation);

    /// `image` at the largest size that fits into a transparent square of that many pixels, in its middle. Of
    /// a bitmap its size in pixels counts, of the largest one where there are several. Null where there is
    /// nothing to draw or no such square.
    static Image resampleImage(const Image& image, qint32 toIconWidth,
                               ImageInterpolation usingImageInterpolation);

    /// An image with one representation for each element that holds a picture which is known here, in the
    /// family's order; its size is that of the largest, in pixels. Stored colours are taken as straight, so
    /// that translucent ones show as they were. Null where there is none.
    Image imageWithAllReps() const;

    // Custom icons, in the ForkStore that is in use: false, and nothing touched, where that keeps no forks.
    // Each ends at the first step that fails, and what was done until then stays. `error`, where there is
    // one, is filled by the steps that are told of below and left alone by all others.

    /// Makes the family the custom icon of a file, which is made where it is missing, and keeps the file's
    /// modification date. `error` tells that the date could not be read, which does not end the operation.
    /// With compatibility the elements that old systems show are stored too; only the form with `error` does
    /// so.
    bool setAsCustomIconForFile(const QString& path) const;
    bool setAsCustomIconForFile(const QString& path, bool withCompatibility) const;
    bool setAsCustomIconForFile(const QString& path, bool withCompatibility, Error* error) const;
    /// The same of a folder, in a new invisible file "Icon\r" in it. `error` tells that an older one could
    /// not be removed.
    bool setAsCustomIconForDirectory(const QString& path) const;
    bool setAsCustomIconForDirectory(const QString& path, bool withCompatibility) const;
    bool setAsCustomIconForDirectory(const QString& path, bool withCompatibility, Error* error) const;

    /// Takes the custom icon off a file that has a resource fork; what compatibility added stays.
    static bool removeCustomIconFromFile(const QString& path);
    /// The same of a folder, with its file "Icon\r"; `error` tells that this could not be removed.
    static bool removeCustomIconFromDirectory(const QString& path, Error* error = nullptr);

    // What `setIconFamilyElement` converts with. Each takes a bitmap of `requiredPixelSize` squared, and has
    // no value for any other size and for shapes that it does not take, which are logged. Rows are packed.

    /// A, R, G, B, straight, from the bitmap's raster image. 3 samples in 24 bits (whose bytes come out as G,
    /// R, 255, B) or 4 in 32, 8 bits each.
    static std::optional<QByteArray> get32BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                    qint32 requiredPixelSize);
    /// The last byte of each pixel. The same shapes.
    static std::optional<QByteArray> get8BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);
    /// The fourth byte of each pixel of 32 bits, the only one of 8, 255 for one of 24.
    static std::optional<QByteArray> get8BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);
    /// A bit for each pixel whose first byte is not 0, most significant first, and all of them again; set for
    /// all pixels of 24 bits, as they are for those of 1. No value either where the width is no multiple
    /// of 8.
    static std::optional<QByteArray> get1BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                   qint32 requiredPixelSize);

  private:
    explicit IconFamily(QByteArray handle) : hIconFamily(std::move(handle)) {}

    QByteArray hIconFamily;
};
