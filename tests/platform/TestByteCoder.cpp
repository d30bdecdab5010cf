#include "platform/deflate/ByteCoder.h"
#include "platform/deflate/PrefixCode.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes written(const Bytes& bytes) {
    constexpr std::uint8_t guard = 0xee;
    Bytes stream(ByteCoder::bound(bytes.size()) + 1, guard);
    const std::size_t length = ByteCoder::write(bytes, stream.data());
    EXPECT_LE(length, ByteCoder::bound(bytes.size()));
    EXPECT_EQ(stream.back(), guard);
    stream.resize(length);
    return stream;
}

/// By another program's reading, which must use up the whole stream.
void expectReadsBack(const Bytes& bytes, const Bytes& stream) {
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    Bytes back(bytes.size() + 1);
    std::size_t used = 0;
    std::size_t length = 0;
    ASSERT_EQ(libdeflate_deflate_decompress_ex(decompressor.get(), stream.data(), stream.size(), back.data(),
                                               back.size(), &used, &length),
              LIBDEFLATE_SUCCESS);
    EXPECT_EQ(used, stream.size());
    back.resize(length);
    EXPECT_TRUE(back == bytes);
}

/// Bytes of which the n-th is as likely as the ratio's n-th power.
Bytes skewed(std::size_t size, double ratio) {
    std::mt19937 random(5);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        const double uniform = (static_cast<double>(random() >> 1U) + 1) / 2147483649.0;
        byte = static_cast<std::uint8_t>(std::min(255.0, std::log(uniform) / std::log(ratio)));
    }
    return bytes;
}

double entropyBits(const Bytes& bytes) {
    std::array<double, 256> counts{};
    for (const std::uint8_t byte : bytes)
        ++counts[byte];
    double bits = 0;
    for (const double count : counts) {
        if (count > 0)
            bits -= count * std::log2(count / static_cast<double>(bytes.size()));
    }
    return bits;
}

} // namespace

TEST(ByteCoder, every_kind_of_bytes_reads_back) {
    for (const std::size_t size : {0UL, 1UL, 2UL, 3UL, 5UL, 255UL, 131071UL, 131072UL, 131073UL, 400001UL}) {
        for (const double ratio : {0.01, 0.5, 0.9, 0.99, 0.9999}) {
            const Bytes bytes = skewed(size, ratio);
            expectReadsBack(bytes, written(bytes));
        }
        const Bytes same(size, 7);
        expectReadsBack(same, written(same));
    }
}

TEST(ByteCoder, every_single_byte_reads_back) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const Bytes bytes(3, static_cast<std::uint8_t>(byte));
        expectReadsBack(bytes, written(bytes));
    }
}

TEST(ByteCoder, noise_is_stored_and_grows_by_next_to_nothing) {
    std::mt19937 random(1);
    Bytes bytes(500000);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    const Bytes stream = written(bytes);
    expectReadsBack(bytes, stream);
    EXPECT_LE(stream.size(), bytes.size() + 60);
}

TEST(ByteCoder, comes_near_the_entropy) {
    for (const double ratio : {0.7, 0.9, 0.97}) {
        const Bytes bytes = skewed(300000, ratio);
        EXPECT_LT(8 * static_cast<double>(written(bytes).size()), 1.03 * entropyBits(bytes) + 3 * 8 * 100);
    }
}

TEST(ByteCoder, each_block_follows_its_own_bytes) {
    Bytes bytes(131072, 1);
    const Bytes other = skewed(131072, 0.5);
    bytes.insert(bytes.end(), other.begin(), other.end());
    const Bytes stream = written(bytes);
    expectReadsBack(bytes, stream);
    EXPECT_LT(8 * static_cast<double>(stream.size()), 131072 + 1.03 * entropyBits(other) + 2000);
}

namespace {

/// Whether the codes are such that none begins as another one, and no bit is wasted.
bool isComplete(std::span<const PrefixCode::Code> codes) {
    std::uint64_t used = 0;
    for (const PrefixCode::Code& code : codes)
        used += code.length > 0 ? std::uint64_t{1} << (32 - code.length) : 0;
    return used == std::uint64_t{1} << 32;
}

} // namespace

TEST(PrefixCode, codes_are_complete_and_none_is_longer_than_allowed) {
    for (const unsigned longest : {7U, 9U, 14U, 15U}) {
        // From all alike to counts that would ask for very long codes.
        for (const double growth : {1.0, 1.1, 1.7, 3.0}) {
            std::vector<std::uint32_t> counts;
            double count = 1;
            for (std::size_t i = 0; i < 100; ++i, count = std::min(count * growth, 1e9))
                counts.push_back(static_cast<std::uint32_t>(count));
            std::vector<PrefixCode::Code> codes(counts.size());
            PrefixCode::assign(counts, longest, codes);
            EXPECT_TRUE(isComplete(codes)) << longest << " " << growth;
            for (std::size_t i = 0; i < codes.size(); ++i) {
                EXPECT_GE(codes[i].length, 1);
                EXPECT_LE(codes[i].length, longest);
                // What occurs more often has no longer code.
                EXPECT_TRUE(i == 0 || counts[i] == counts[i - 1] || codes[i].length <= codes[i - 1].length);
            }
        }
    }
}

TEST(PrefixCode, lengths_are_those_of_the_least_sum) {
    // 1, 1, 2, 4: the two rarest share a branch, and so on.
    const std::vector<std::uint32_t> counts{4, 0, 1, 2, 1};
    std::vector<PrefixCode::Code> codes(counts.size());
    PrefixCode::assign(counts, 15, codes);
    std::vector<int> lengths(counts.size());
    std::ranges::transform(codes, lengths.begin(), &PrefixCode::Code::length);
    EXPECT_EQ(lengths, (std::vector<int>{1, 0, 3, 2, 3}));
    // In the order of the symbols, the first bit lowest: 0, 110, 10, 111.
    EXPECT_EQ(codes[0].bits, 0b0);
    EXPECT_EQ(codes[3].bits, 0b01);
    EXPECT_EQ(codes[2].bits, 0b011);
    EXPECT_EQ(codes[4].bits, 0b111);
}

TEST(PrefixCode, at_least_two_symbols_have_a_code) {
    for (const std::vector<std::uint32_t>& counts :
         {std::vector<std::uint32_t>{0, 0, 0}, std::vector<std::uint32_t>{0, 0, 9},
          std::vector<std::uint32_t>{9, 0, 0}}) {
        std::vector<PrefixCode::Code> codes(counts.size());
        PrefixCode::assign(counts, 15, codes);
        EXPECT_TRUE(isComplete(codes));
    }
}
