#include "imaging/icns/IcnsRle.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t shortestRun = 3;
constexpr std::size_t longestRun = 130;
constexpr std::size_t longestLiteral = 128;
constexpr int firstRunControl = 128;

std::size_t runLength(std::span<const std::uint8_t> bytes) {
    const std::size_t limit = std::min(bytes.size(), longestRun);
    std::size_t length = 1;
    while (length < limit && bytes[length] == bytes[0])
        ++length;
    return length;
}

void appendLiteral(std::span<const std::uint8_t> bytes, QByteArray& out) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), longestLiteral);
        out.append(static_cast<char>(count - 1));
        out.append(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(count));
        bytes = bytes.subspan(count);
    }
}

/// Calls `take(isRun, bytes, count)` for each packet of a channel: `count` is how many bytes of the channel
/// it stands for. Returns what follows the channel; no value where the packets do not fill it exactly.
template <typename Take>
std::optional<QByteArrayView> forEachPacket(QByteArrayView packed, std::size_t channelSize, Take take) {
    while (channelSize > 0) {
        if (packed.isEmpty())
            return std::nullopt;
        const int control = static_cast<std::uint8_t>(packed[0]);
        packed = packed.sliced(1);
        const bool isRun = control >= firstRunControl;
        const auto count = static_cast<std::size_t>(isRun ? control - firstRunControl + 3 : control + 1);
        const auto needed = isRun ? qsizetype{1} : static_cast<qsizetype>(count);
        if (count > channelSize || needed > packed.size())
            return std::nullopt;
        take(isRun, packed.first(needed), count);
        packed = packed.sliced(needed);
        channelSize -= count;
    }
    return packed;
}

} // namespace

void IcnsRle::pack(std::span<const std::uint8_t> channel, QByteArray& out, bool lastAlone) {
    if (channel.empty())
        return;
    const std::span<const std::uint8_t> last = channel.last(lastAlone ? 1 : 0);
    const std::span<const std::uint8_t> body = channel.first(channel.size() - last.size());
    std::size_t literalStart = 0;
    std::size_t at = 0;
    while (at < body.size()) {
        const std::size_t run = runLength(body.subspan(at));
        if (run >= shortestRun) {
            appendLiteral(body.subspan(literalStart, at - literalStart), out);
            out.append(static_cast<char>(run - shortestRun + firstRunControl));
            out.append(static_cast<char>(body[at]));
            literalStart = at + run;
        }
        at += run;
    }
    appendLiteral(body.subspan(literalStart), out);
    appendLiteral(last, out);
}

std::optional<QByteArrayView> IcnsRle::unpack(QByteArrayView packed, std::span<std::uint8_t> channel) {
    return forEachPacket(packed, channel.size(), [&](bool isRun, QByteArrayView bytes, std::size_t count) {
        if (isRun)
            std::memset(channel.data(), bytes[0], count);
        else
            std::memcpy(channel.data(), bytes.data(), count);
        channel = channel.subspan(count);
    });
}

std::optional<QByteArrayView> IcnsRle::skip(QByteArrayView packed, std::size_t channelSize) {
    return forEachPacket(packed, channelSize, [](bool, QByteArrayView, std::size_t) {});
}
