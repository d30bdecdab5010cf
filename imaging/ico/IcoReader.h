#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSize>

#include <vector>

/// Reads Windows icon files: bitmaps of 1, 4, 8, 16, 24 and 32 bits with their masks, and PNG files. Source:
/// Microsoft, "The ICO file format". The bytes must outlive the reader.
class IcoReader {
  public:
    /// An image of the file that is not yet decoded.
    struct Entry {
        QSize size;          ///< that its data tell, or else the file's list
        int bits = 0;        ///< of a pixel
        QByteArrayView data; ///< empty where the list points outside of the file
    };

    /// The most pixels in a row or column of an image, and the most sizes that are read.
    static constexpr int longestSide = 1024;
    static constexpr std::size_t mostSizes = 32;

    /// Damaged where the list of images breaks off or has none, OutOfMemory.
    static Result<IcoReader> open(const QByteArray& bytes);

    /// One image of each size, that with the most colours, and only sizes of the largest one's shape. The
    /// largest comes first.
    const std::vector<Entry>& entries() const { return m_entries; }

    /// Damaged where the image breaks off or is of a kind that is not read, TooLarge, OutOfMemory.
    Result<DecodedPicture> picture(const Entry& entry) const;

  private:
    std::vector<Entry> m_entries;
};

/// The largest image of a Windows icon file.
Result<DecodedPicture> readIco(const QByteArray& bytes);
