#include "imaging/icns/IcnsTypes.h"

#include <algorithm>

namespace {

constexpr IcnsElementType picture(FourCharCode code, int pixelSize, int scale = 1) {
    return {code, IcnsContent::Picture, pixelSize, scale};
}

constexpr IcnsElementType colors(FourCharCode code, int pixelSize, FourCharCode mask,
                                 bool hasLeadingZeros = false) {
    return {code, IcnsContent::Colors, pixelSize, 1, mask, hasLeadingZeros};
}

constexpr IcnsElementType mask(FourCharCode code, int pixelSize) {
    return {code, IcnsContent::Mask, pixelSize};
}

/// Most pixels first.
constexpr IcnsElementType types[] = {
    picture("ic10", 1024, 2),
    picture("ic09", 512),
    picture("ic14", 512, 2),
    picture("ic08", 256),
    picture("ic13", 256, 2),
    picture("ic07", 128),
    colors("it32", 128, "t8mk", true),
    picture("icp6", 64),
    picture("ic12", 64, 2),
    picture("ic06", 48),
    picture("SB24", 48, 2),
    colors("ih32", 48, "h8mk"),
    picture("icsB", 36, 2),
    picture("icp5", 32),
    picture("ic05", 32),
    picture("ic11", 32, 2),
    colors("il32", 32, "l8mk"),
    picture("sb24", 24),
    picture("icsb", 18),
    picture("icp4", 16),
    picture("ic04", 16),
    colors("is32", 16, "s8mk"),
    mask("t8mk", 128),
    mask("h8mk", 48),
    mask("l8mk", 32),
    mask("s8mk", 16),
};

} // namespace

IcnsHeader icnsHeader(FourCharCode code, qsizetype length) {
    return {quint32_be(code.value), quint32_be(static_cast<quint32>(length))};
}

std::span<const IcnsElementType> icnsElementTypes() {
    return types;
}

const IcnsElementType* icnsElementType(FourCharCode code) {
    const auto* found = std::ranges::find(types, code, &IcnsElementType::code);
    return found != std::end(types) ? found : nullptr;
}
