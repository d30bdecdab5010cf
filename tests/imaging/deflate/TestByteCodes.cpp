#include "imaging/deflate/ByteCodes.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace {

using PrefixCode::Code;
using Codes = std::array<Code, ByteCodes::byteCount>;

Codes assigned(double ratio) {
    std::array<std::uint32_t, ByteCodes::byteCount> counts{};
    double count = 1e6;
    for (std::uint32_t& each : counts) {
        each = static_cast<std::uint32_t>(count);
        count *= ratio;
    }
    Codes codes;
    PrefixCode::assign(counts, ByteCodes::longest, codes);
    return codes;
}

/// The written bytes: three bits, then the bits that `write` writes.
template <typename Write>
std::vector<std::uint8_t> written(std::size_t size, const Write& write) {
    std::vector<std::uint8_t> out(2 * size + 16);
    BitWriter writer(out.data());
    writer.put(5, 3);
    write(writer);
    writer.fillByte();
    out.resize(static_cast<std::size_t>(writer.end() - out.data()));
    return out;
}

} // namespace

TEST(ByteCodes, are_written_one_behind_the_other) {
    std::mt19937 random(3);
    for (const double ratio : {0.5, 0.93, 0.99, 1.0}) {
        const Codes codes = assigned(ratio);
        std::vector<std::uint8_t> values;
        for (std::size_t i = 0; i < codes.size(); ++i) {
            if (codes[i].length > 0)
                values.push_back(static_cast<std::uint8_t>(i));
        }
        const ByteCodes byteCodes(codes);
        for (const std::size_t size : {0UL, 3UL, 4UL, 7UL, 8UL, 1100UL, 5001UL}) {
            std::vector<std::uint8_t> bytes(size);
            for (std::uint8_t& byte : bytes)
                byte = values[random() % values.size()];
            const auto expected = written(size, [&](BitWriter& writer) {
                for (std::size_t i = 0; i < size - size % 4; ++i) {
                    writer.put(codes[bytes[i]]);
                    writer.flush();
                }
            });
            EXPECT_EQ(written(size, [&](BitWriter& writer) { byteCodes.write(writer, bytes.data(), size); }),
                      expected)
                << ratio << " " << size;
        }
    }
}

TEST(ByteCodes, of_the_longest_codes_nothing_is_lost) {
    Codes codes;
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        codes[i] = {static_cast<std::uint16_t>((i * 0x55U) & 0x3fffU), ByteCodes::longest};
        bytes.push_back(static_cast<std::uint8_t>(i));
    }
    const ByteCodes byteCodes(codes);
    const auto out = written(bytes.size(),
                             [&](BitWriter& writer) { byteCodes.write(writer, bytes.data(), bytes.size()); });
    // 256 codes of 14 bits after three other bits.
    ASSERT_EQ(out.size(), 449U);
    std::size_t bit = 3;
    for (const Code& code : codes) {
        for (unsigned i = 0; i < code.length; ++i, ++bit)
            ASSERT_EQ(out[bit / 8] >> (bit % 8) & 1, code.bits >> i & 1) << bit;
    }
}
