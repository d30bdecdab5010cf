#pragma once

#include "imaging/icns/IcnsTypes.h"
#include "imaging/image/PictureReader.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

/// One element of an icns file; `data` points into the file's bytes.
struct IcnsElement {
    FourCharCode type;
    QByteArrayView data;
};

/// Reads the icns container. The bytes must outlive the reader. Functions that take memory may fail with
/// OutOfMemory.
class IcnsReader {
  public:
    /// Damaged where the file's or an element's length does not agree with the bytes.
    static Result<IcnsReader> open(const QByteArray& bytes);

    /// The length in the header of icns data; no value where there is no such header.
    static std::optional<qsizetype> lengthOf(const QByteArray& bytes);

    /// How many bytes to read of a file that begins with `start`: its header and what the header states.
    /// UnknownFormat if it does not begin like an icns file.
    static Result<qint64> lengthToRead(const QByteArray& start);

    /// The length in the file's header. Bytes after it are not part of the icns file.
    qsizetype length() const { return m_length; }

    /// All elements in the file's order, unknown ones too.
    const std::vector<IcnsElement>& elements() const { return m_elements; }

    /// The first element of that type, or null.
    const IcnsElement* element(FourCharCode type) const;

    /// The elements that hold pictures, in the file's order; only the first of each type.
    Result<std::vector<IcnsElement>> pictureElements() const;

    /// The picture of one element. Unsupported for a type that holds no picture. Damaged where its data are
    /// broken, its header states more than 1024 pixels a side, or its mask is too short. Of a mask that is
    /// too long the beginning counts. Colours without their mask are opaque. Stored colours are straight.
    Result<DecodedPicture> picture(const IcnsElement& element) const;

    /// The pixels of an element as they are stored: RGBA8888, straight. Those of a JPEG 2000 file are in
    /// sRGB. Unsupported for PNG files and for types that hold no picture, Damaged as `picture`.
    Result<QImage> samples(const IcnsElement& element) const;

    /// The element with the largest picture, by the picture's header or else by the type. Null where no
    /// element holds a picture.
    const IcnsElement* largestElement() const;

    /// The picture of `largestElement`. Unsupported where the file has no picture.
    Result<DecodedPicture> largestPicture() const;

  private:
    static Result<IcnsReader> parsed(const QByteArray& bytes);
    Result<QImage> storedSamples(const IcnsElement& element) const;

    qsizetype m_length = 0;
    std::vector<IcnsElement> m_elements;
};
