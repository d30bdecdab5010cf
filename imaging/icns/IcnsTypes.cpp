#include "imaging/icns/IcnsTypes.h"

#include <algorithm>

namespace {

constexpr FourCharCode noMask;

/// Most pixels first.
constexpr IcnsElementType types[] = {
    {"ic10", IcnsContent::Picture, 1024, noMask},     {"ic09", IcnsContent::Picture, 512, noMask},
    {"ic14", IcnsContent::Picture, 512, noMask},      {"ic08", IcnsContent::Picture, 256, noMask},
    {"ic13", IcnsContent::Picture, 256, noMask},      {"ic07", IcnsContent::Picture, 128, noMask},
    {"it32", IcnsContent::Colors, 128, "t8mk", true}, {"icp6", IcnsContent::Picture, 64, noMask},
    {"ic12", IcnsContent::Picture, 64, noMask},       {"ic06", IcnsContent::Picture, 48, noMask},
    {"SB24", IcnsContent::Picture, 48, noMask},       {"ih32", IcnsContent::Colors, 48, "h8mk"},
    {"icsB", IcnsContent::Picture, 36, noMask},       {"icp5", IcnsContent::Picture, 32, noMask},
    {"ic05", IcnsContent::Picture, 32, noMask},       {"ic11", IcnsContent::Picture, 32, noMask},
    {"il32", IcnsContent::Colors, 32, "l8mk"},        {"sb24", IcnsContent::Picture, 24, noMask},
    {"icsb", IcnsContent::Picture, 18, noMask},       {"icp4", IcnsContent::Picture, 16, noMask},
    {"ic04", IcnsContent::Picture, 16, noMask},       {"is32", IcnsContent::Colors, 16, "s8mk"},
    {"t8mk", IcnsContent::Mask, 128, noMask},         {"h8mk", IcnsContent::Mask, 48, noMask},
    {"l8mk", IcnsContent::Mask, 32, noMask},          {"s8mk", IcnsContent::Mask, 16, noMask},
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
