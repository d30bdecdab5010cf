#pragma once

#include "iconfamily/IconFamily.h"

/// An element type that a bitmap can be stored as.
struct WritableElement {
    FourCharCode code;
    int pixelSize; ///< that the bitmap must have
    std::optional<QByteArray> (*convert)(const BitmapImageRep& bitmap, qint32 requiredPixelSize);
};

/// Null for any other type.
const WritableElement* writableElement(FourCharCode type);

/// An element type that can be read back as a bitmap.
struct ReadableElement {
    FourCharCode code;
    int pixelSize; ///< of 'ic10' not the one that it is stored with
    bool hasMask = false;
    FourCharCode mask{};
};

const ReadableElement* readableElement(FourCharCode type);
