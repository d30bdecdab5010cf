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

constexpr ReadableElement readable[] = {
    {"ic04", 16},
    {"ic05", 32},
    {"ic06", 48},
    {"ic07", 128},
    {"ic08", 256},
    {"ic09", 512},
    {"ic10", 1024},
    {"ic11", 32},
    {"ic12", 64},
    {"ic13", 256},
    {"ic14", 512},
    {"is32", 16, true, "s8mk"},
    {"il32", 32, true, "l8mk"},
    {"ih32", 48, true, "h8mk"},
    {"it32", 128, true, "t8mk"},
};

} // namespace

const WritableElement* writableElement(FourCharCode type) {
    const auto* found = std::ranges::find(writable, type, &WritableElement::code);
    return found != std::end(writable) ? found : nullptr;
}

const ReadableElement* readableElement(FourCharCode type) {
    const auto* found = std::ranges::find(readable, type, &ReadableElement::code);
    return found != std::end(readable) ? found : nullptr;
}
