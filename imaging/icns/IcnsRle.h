#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <span>

class QByteArray;

/// The run-length code of icns channels. Control byte from 0 to 127: the next (control + 1) bytes are taken
/// as they are. Control byte from 128 to 255: the next byte is repeated (control − 125) times, 3 to 130.
namespace IcnsRle {

/// Appends one packed channel to `out`. With `lastAlone` the last byte is a literal of its own. Some readers
/// need that at the end of the last channel.
void pack(std::span<const std::uint8_t> channel, QByteArray& out, bool lastAlone);

/// Unpacks exactly `channel.size()` bytes from the front of `packed` and returns what follows them. No value
/// where `packed` ends too early, or a packet reaches past the channel's end.
std::optional<QByteArrayView> unpack(QByteArrayView packed, std::span<std::uint8_t> channel);

/// As `unpack` for a channel of `channelSize` bytes, but does not keep the bytes.
std::optional<QByteArrayView> skip(QByteArrayView packed, std::size_t channelSize);

} // namespace IcnsRle
