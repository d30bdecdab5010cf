#include "imaging/deflate/PrefixCode.h"
#include "imaging/deflate/RunBlock.h"
#include "imaging/deflate/RunCoder.h"
#include "imaging/deflate/RunSymbols.h"

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

/// The stream of `bytes`, which come in parts of `part` bytes. Expects that nothing is written beyond the
/// room that `bound` asks for.
Bytes written(const Bytes& bytes, std::size_t part = 50000) {
    constexpr std::uint8_t guard = 0xee;
    Bytes stream;
    const auto withRoom = [&](std::size_t size, const auto& write) {
        const std::size_t start = stream.size();
        stream.resize(start + RunCoder::bound(RunBlock::mostBytes + size) + 1, guard);
        const std::size_t length = write(stream.data() + start);
        EXPECT_LT(start + length, stream.size());
        EXPECT_EQ(stream.back(), guard);
        stream.resize(start + length);
    };
    RunCoder coder(bytes.size(), part);
    for (std::size_t at = 0; at < bytes.size(); at += part) {
        const std::size_t size = std::min(part, bytes.size() - at);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), size, coder.nextPart());
        withRoom(size, [&](std::uint8_t* out) { return coder.addPart(size, out); });
    }
    withRoom(0, [&](std::uint8_t* out) { return coder.finish(out); });
    EXPECT_EQ(RunCoder::length(bytes), stream.size());
    EXPECT_LE(stream.size(), RunCoder::bound(bytes.size()));
    return stream;
}

/// Expects that libdeflate reads these bytes back, and uses the whole stream.
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

/// Random bytes. The value n is as likely as the n-th power of `ratio`.
Bytes skewed(std::size_t size, double ratio) {
    std::mt19937 random(5);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        const double uniform = (static_cast<double>(random() >> 1U) + 1) / 2147483649.0;
        byte = static_cast<std::uint8_t>(std::min(255.0, std::log(uniform) / std::log(ratio)));
    }
    return bytes;
}

/// Stretches of noise, of few values, and of runs of many lengths at many distances.
Bytes mixed(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes;
    while (bytes.size() < size) {
        const unsigned kind = random() % 4;
        const std::size_t length = kind == 3 ? random() % 3000 : random() % 40;
        const std::size_t distance = 1 + random() % 13;
        for (std::size_t i = 0; i < length; ++i) {
            if (kind == 0)
                bytes.push_back(static_cast<std::uint8_t>(random()));
            else if (kind == 1 || bytes.size() < distance)
                bytes.push_back(static_cast<std::uint8_t>(random() % 3));
            else
                bytes.push_back(bytes[bytes.size() - distance]);
        }
    }
    bytes.resize(size);
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

TEST(RunCoder, every_kind_of_bytes_reads_back) {
    for (const std::size_t size : {0UL, 1UL, 2UL, 3UL, 5UL, 255UL, 131071UL, 131072UL, 131073UL, 400001UL}) {
        for (const double ratio : {0.01, 0.5, 0.9, 0.99, 0.9999}) {
            const Bytes bytes = skewed(size, ratio);
            expectReadsBack(bytes, written(bytes));
        }
        const Bytes same(size, 7);
        expectReadsBack(same, written(same));
    }
}

TEST(RunCoder, runs_of_every_length_and_distance_read_back) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const Bytes bytes = mixed(seed % 8 == 0 ? 300000 : 5000 + seed, seed);
        expectReadsBack(bytes, written(bytes));
    }
}

TEST(RunCoder, parts_make_no_difference) {
    const Bytes bytes = mixed(400000, 1);
    const Bytes stream = written(bytes);
    for (const std::size_t part : {97UL, 4097UL, 131072UL, 400000UL})
        EXPECT_TRUE(written(bytes, part) == stream) << part;
    const Bytes few = mixed(300, 2);
    EXPECT_TRUE(written(few, 1) == written(few, 300));
}

TEST(RunCoder, runs_of_bytes_and_pixels_take_next_to_nothing) {
    // Bytes that repeat after 1, 2, 3, 4, 6, 8 or 12 bytes are runs. Bytes that repeat after 7 are not.
    std::mt19937 random(4);
    for (const std::size_t period : {1UL, 2UL, 3UL, 4UL, 6UL, 8UL, 12UL, 7UL}) {
        Bytes bytes(period);
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
        while (bytes.size() < 100000)
            bytes.push_back(bytes[bytes.size() - period]);
        const Bytes stream = written(bytes);
        expectReadsBack(bytes, stream);
        if (period == 7)
            EXPECT_GT(stream.size(), bytes.size() / 4);
        else
            EXPECT_LT(stream.size(), 300) << period;
    }
}

TEST(RunCoder, a_run_goes_on_in_the_next_block) {
    for (const std::size_t distance : {1UL, 4UL, 8UL, 12UL}) {
        Bytes bytes = skewed(RunBlock::mostBytes - 3, 0.99);
        while (bytes.size() < RunBlock::mostBytes + 1000)
            bytes.push_back(bytes[bytes.size() - distance]);
        const Bytes stream = written(bytes);
        expectReadsBack(bytes, stream);
        const Bytes first(bytes.begin(), bytes.begin() + RunBlock::mostBytes);
        EXPECT_LT(stream.size(), written(first).size() + 60) << distance;
    }
}

TEST(RunSymbols, lengths_are_those_of_the_format) {
    // RFC 1951, section 3.2.5: the first length of some symbols, and how many bits follow them.
    const struct {
        std::size_t length;
        unsigned symbol;
        unsigned bits;
        unsigned count;
    } expected[] = {{3, 257, 0, 0},   {10, 264, 0, 0},   {11, 265, 0, 1},   {12, 265, 1, 1},
                    {18, 268, 1, 1},  {19, 269, 0, 2},   {114, 279, 15, 4}, {115, 280, 0, 4},
                    {131, 281, 0, 5}, {226, 283, 31, 5}, {227, 284, 0, 5},  {257, 284, 30, 5},
                    {258, 285, 0, 0}};
    for (const auto& [length, symbol, bits, count] : expected) {
        const RunSymbols::Extra& extra = RunSymbols::lengthOf(length);
        EXPECT_EQ(RunSymbols::firstLength + extra.symbol, symbol) << length;
        EXPECT_EQ(extra.bits, bits) << length;
        EXPECT_EQ(extra.count, count) << length;
    }
}

TEST(RunCoder, every_single_byte_reads_back) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const Bytes bytes(3, static_cast<std::uint8_t>(byte));
        expectReadsBack(bytes, written(bytes));
    }
}

TEST(RunCoder, noise_is_stored_and_grows_by_next_to_nothing) {
    std::mt19937 random(1);
    Bytes bytes(500000);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    const Bytes stream = written(bytes);
    expectReadsBack(bytes, stream);
    EXPECT_LE(stream.size(), bytes.size() + 60);
}

TEST(RunCoder, comes_near_the_entropy) {
    for (const double ratio : {0.7, 0.9, 0.97}) {
        const Bytes bytes = skewed(300000, ratio);
        EXPECT_LT(8 * static_cast<double>(written(bytes).size()), 1.03 * entropyBits(bytes) + 3 * 8 * 100);
    }
}

TEST(RunCoder, each_block_follows_its_own_bytes) {
    Bytes bytes(131072, 1);
    const Bytes other = skewed(131072, 0.5);
    bytes.insert(bytes.end(), other.begin(), other.end());
    const Bytes stream = written(bytes);
    expectReadsBack(bytes, stream);
    EXPECT_LT(8 * static_cast<double>(stream.size()), 1.03 * entropyBits(other) + 2000);
}

namespace {

/// Whether no code is the beginning of another code, and no bit is wasted.
bool isComplete(std::span<const PrefixCode::Code> codes) {
    std::uint64_t used = 0;
    for (const PrefixCode::Code& code : codes)
        used += code.length > 0 ? std::uint64_t{1} << (32 - code.length) : 0;
    return used == std::uint64_t{1} << 32;
}

} // namespace

TEST(PrefixCode, codes_are_complete_and_none_is_longer_than_allowed) {
    for (const unsigned longest : {7U, 9U, 14U, 15U}) {
        // From equal counts to counts that would need very long codes.
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
                // A symbol that occurs more often has no longer code.
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
    // In the order of the symbols: 0, 110, 10, 111. The first bit is the lowest.
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
