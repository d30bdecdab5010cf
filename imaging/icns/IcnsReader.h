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

/// Reads the icns container. The bytes must outlive the reader. What takes memory may fail with OutOfMemory.
class IcnsReader {
  public:
    /// Damaged where the file's or an element's length does not agree with the bytes.
    static Result<IcnsReader> open(const QByteArray& bytes);

    /// The length that the header of icns data tells; no value where there is no such header.
    static std::optional<qsizetype> lengthOf(const QByteArray& bytes);

    /// The length of the whole, as its header tells it; what follows in the bytes is no part of it.
    qsizetype length() const { return m_length; }

    /// All elements in the file's order, unknown ones too.
    const std::vector<IcnsElement>& elements() const { return m_elements; }

    /// The first element of that type, or null.
    const IcnsElement* element(FourCharCode type) const;

    /// The elements that hold pictures, in the file's order; of several of one type the first.
    Result<std::vector<IcnsElement>> pictureElements() const;

    /// The picture of one element: Unsupported for a type that holds none, Damaged where its data are broken
    /// or say that they are a picture of more than 1024 pixels a side. Colours without their mask are opaque.
    /// Stored colours are straight.
    Result<DecodedPicture> picture(const IcnsElement& element) const;

    /// The pixels of an element that holds samples, as they are stored: RGBA8888, straight. Unsupported for
    /// files inside and for types that hold no picture, Damaged as `picture`.
    Result<QImage> samples(const IcnsElement& element) const;

    /// The element whose picture is the largest, as its header tells it; null where there is none.
    const IcnsElement* largestElement() const;

    /// The picture of that element. Unsupported where the file has no picture.
    Result<DecodedPicture> largestPicture() const;

  private:
    static Result<IcnsReader> parsed(const QByteArray& bytes);
    Result<QImage> storedSamples(const IcnsElement& element) const;

    qsizetype m_length = 0;
    std::vector<IcnsElement> m_elements;
};
