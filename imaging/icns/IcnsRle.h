#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <span>

class QByteArray;

/// The run-length code of icns channels: a control byte from 0 to 127 is followed by that many and one more
/// bytes as they are, one from 128 to 255 by one byte that stands for (control − 125), 3 to 130, of its kind.
namespace IcnsRle {

/// Appends one packed channel to `out`. `lastAlone` ends it with its last byte as a literal of its own, which
/// some readers need at the end of the last channel.
void pack(std::span<const std::uint8_t> channel, QByteArray& out, bool lastAlone);

/// Unpacks exactly `channel.size()` bytes from the front of `packed` and returns what follows them. No value
/// where `packed` ends before, or a run reaches past the channel's end.
std::optional<QByteArrayView> unpack(QByteArrayView packed, std::span<std::uint8_t> channel);

/// As `unpack` of a channel of that many bytes, but keeps none.
std::optional<QByteArrayView> skip(QByteArrayView packed, std::size_t channelSize);

} // namespace IcnsRle
