#include "iconfamily/IconFamilyElements.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr auto colors = ElementContent::Colors;
constexpr auto channel = ElementContent::Channel;
constexpr auto mask = ElementContent::Coverage;
constexpr auto bits = ElementContent::Bits;

constexpr WritableElement writable[] = {
    {"ic04", 16, colors},  {"ic05", 32, colors},  {"ic06", 48, colors},  {"ic07", 128, colors},
    {"ic08", 256, colors}, {"ic09", 512, colors}, {"ic10", 512, colors}, {"ic11", 32, colors},
    {"ic12", 64, colors},  {"ic13", 256, colors}, {"ic14", 512, colors}, {"is32", 16, colors},
    {"il32", 32, colors},  {"ih32", 48, colors},  {"it32", 128, colors}, {"s8mk", 16, mask},
    {"l8mk", 32, mask},    {"h8mk", 48, mask},    {"t8mk", 128, mask},   {"ics8", 16, channel},
    {"icl8", 32, channel}, {"ich8", 48, channel}, {"ics#", 16, bits},    {"ICN#", 32, bits},
    {"ich#", 48, bits},
};

} // namespace

const WritableElement* writableElement(FourCharCode type) {
    const auto* found = std::ranges::find(writable, type, &WritableElement::code);
    return found != std::end(writable) ? found : nullptr;
}

const IcnsElementType* readableElement(FourCharCode type) {
    const WritableElement* written = writableElement(type);
    return written != nullptr && written->content == ElementContent::Colors ? icnsElementType(type) : nullptr;
}
