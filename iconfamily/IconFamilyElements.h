#pragma once

#include "imaging/icns/IcnsTypes.h"

/// What an element stores for each pixel of a bitmap.
enum class ElementContent {
    Colors,   ///< A, R, G, B samples
    Channel,  ///< one byte of one channel
    Coverage, ///< one byte of coverage
    Bits,     ///< one bit, stored twice
};

/// An element type as which a bitmap can be stored.
struct WritableElement {
    FourCharCode code;
    int pixelSize; ///< the size that the bitmap must have
    ElementContent content;
};

/// Null if no bitmap can be stored as this type.
const WritableElement* writableElement(FourCharCode type);

/// An element type that can be read back as a bitmap: one with colours. Its pixel size is the one in icns
/// files; for 'ic10' that differs from the size of the stored bitmap. Null for any other type.
const IcnsElementType* readableElement(FourCharCode type);
