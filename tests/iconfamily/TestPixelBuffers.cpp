#include "iconfamily/PixelBuffers.h"
#include "tests/support/EachVectorTarget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes noise(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

/// From no pixels to several vectors of any width, and one pixel more or less.
const std::vector<std::size_t> lengths{0,  1,  2,  3,  7,  8,  9,   15,  16,  17,
                                       31, 32, 33, 63, 64, 65, 127, 128, 129, 1000};

void expectPermutePlain() {
    for (unsigned code = 0; code < 256; ++code) {
        const PixelBuffers::Map map{
            static_cast<std::uint8_t>(code & 3U), static_cast<std::uint8_t>(code >> 2 & 3U),
            static_cast<std::uint8_t>(code >> 4 & 3U), static_cast<std::uint8_t>(code >> 6 & 3U)};
        for (const std::size_t pixels : lengths) {
            const Bytes in = noise(4 * pixels, code);
            Bytes expected(in.size());
            for (std::size_t i = 0; i < in.size(); ++i)
                expected[i] = in[i - i % 4 + map[i % 4]];
            // The output is misaligned by one byte and has a guard byte at either end.
            Bytes out(in.size() + 2, 0xee);
            PixelBuffers::permute(in.data(), out.data() + 1, pixels, map);
            ASSERT_EQ(out.front(), 0xee);
            ASSERT_EQ(out.back(), 0xee);
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin() + 1))
                << code << " " << pixels;
            Bytes inPlace = in;
            PixelBuffers::permute(inPlace.data(), inPlace.data(), pixels, map);
            ASSERT_EQ(inPlace, expected);
        }
    }
}

void expectExpandPlain() {
    for (const std::size_t pixels : lengths) {
        const Bytes in = noise(3 * pixels, 1);
        Bytes out(4 * pixels + 1, 0xee);
        PixelBuffers::expandRgb(in.data(), out.data(), pixels);
        ASSERT_EQ(out.back(), 0xee);
        for (std::size_t i = 0; i < pixels; ++i) {
            ASSERT_EQ(out[4 * i], 255);
            ASSERT_TRUE(std::equal(&in[3 * i], &in[3 * i] + 3, &out[4 * i + 1])) << i << " of " << pixels;
        }
    }
}

} // namespace

TEST(PixelBuffers, permute_is_a_plain_loop_for_every_map) {
    EXPECT_GE(forEachVectorTarget(expectPermutePlain), 1);
}

TEST(PixelBuffers, expand_is_a_plain_loop) {
    EXPECT_GE(forEachVectorTarget(expectExpandPlain), 1);
}
