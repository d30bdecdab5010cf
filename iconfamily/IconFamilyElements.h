#pragma once

#include "imaging/icns/IcnsTypes.h"

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

/// A type that can be read back as a bitmap, which are those with colours; its pixel size is that of icns
/// files, for 'ic10' not the one that it is stored with. Null for any other type.
const IcnsElementType* readableElement(FourCharCode type);
