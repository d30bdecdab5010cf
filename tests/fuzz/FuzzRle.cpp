// Packs and unpacks any bytes as a channel, and unpacks them as a packed channel.

#include "imaging/icns/IcnsRle.h"
#include "tests/fuzz/Require.h"

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> channel(data, size);
    for (const bool lastAlone : {false, true}) {
        QByteArray packed;
        IcnsRle::pack(channel, packed, lastAlone);
        std::vector<std::uint8_t> unpacked(size);
        const std::optional<QByteArrayView> rest = IcnsRle::unpack(packed, unpacked);
        require(rest && rest->isEmpty() && std::ranges::equal(channel, unpacked));
    }
    const QByteArrayView any(data, static_cast<qsizetype>(size));
    constexpr std::size_t smallIcon = 256;
    std::vector<std::uint8_t> unpacked(smallIcon);
    if (const std::optional<QByteArrayView> rest = IcnsRle::unpack(any, unpacked)) {
        // The bytes that were used unpack on their own. Without their last byte they do not.
        const QByteArrayView taken = any.chopped(rest->size());
        std::vector<std::uint8_t> again(smallIcon);
        require(IcnsRle::unpack(taken, again) && again == unpacked);
        require(!IcnsRle::unpack(taken.chopped(1), again));
    }
    return 0;
}
