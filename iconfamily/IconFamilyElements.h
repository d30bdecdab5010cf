#pragma once

#include "base/FourCharCode.h"

/// What an element keeps of a bitmap.
enum class ElementContent {
    Colors,   ///< A, R, G, B samples
    Channel,  ///< a byte of one channel
    Coverage, ///< a byte of coverage
    Bits,     ///< a bit, twice
};

/// An element type that a bitmap can be stored as.
struct WritableElement {
    FourCharCode code;
    int pixelSize; ///< that the bitmap must have
    ElementContent content;
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
