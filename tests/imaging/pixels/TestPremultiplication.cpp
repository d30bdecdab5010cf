#include "imaging/pixels/Premultiplication.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixel = std::array<unsigned, 4>;

/// An operation, and its result for one pixel.
struct Operation {
    const char* name;
    void (*run)(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);
    Pixel (*expected)(const Pixel& in);
};

unsigned divided(unsigned c, unsigned a) {
    return a == 0 ? 0 : std::min(255U, (c * 255 + a / 2) / a);
}

const Operation operations[] = {
    {"premultiply", premultiply,
     [](const Pixel& p) {
         const auto multiplied = [&](unsigned c) { return (2 * c * p[3] + 255) / 510; };
         return Pixel{multiplied(p[0]), multiplied(p[1]), multiplied(p[2]), p[3]};
     }},
    {"unpremultiply", unpremultiply,
     [](const Pixel& p) {
         return Pixel{divided(p[0], p[3]), divided(p[1], p[3]), divided(p[2], p[3]), p[3]};
     }},
    {"unpremultiplyArgb", unpremultiplyArgb,
     [](const Pixel& p) {
         return Pixel{p[0], divided(p[1], p[0]), divided(p[2], p[0]), divided(p[3], p[0])};
     }},
    {"clampToAlpha", clampToAlpha,
     [](const Pixel& p) {
         return Pixel{std::min(p[0], p[3]), std::min(p[1], p[3]), std::min(p[2], p[3]), p[3]};
     }},
};

/// From no pixel to several vectors of any width, with one pixel more and less.
constexpr std::size_t lengths[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 1000};

Bytes plainly(const Operation& operation, const Bytes& in) {
    Bytes out;
    for (std::size_t i = 0; i < in.size(); i += 4) {
        for (const unsigned sample : operation.expected({in[i], in[i + 1], in[i + 2], in[i + 3]}))
            out.push_back(static_cast<std::uint8_t>(sample));
    }
    return out;
}

/// Every pair of two bytes, at each place of a pixel.
Bytes everyPair() {
    Bytes bytes;
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned c = 0; c < 256; ++c) {
            for (const unsigned byte : {a, c, 255 - c, c ^ a, c, 255 - c, c ^ a, a})
                bytes.push_back(static_cast<std::uint8_t>(byte));
        }
    }
    return bytes;
}

} // namespace

TEST(Premultiplication, every_colour_with_every_alpha_is_rounded_as_stated) {
    const Bytes in = everyPair();
    for (const Operation& operation : operations) {
        Bytes out(in.size());
        operation.run(in.data(), out.data(), in.size() / 4);
        EXPECT_TRUE(out == plainly(operation, in)) << operation.name;
    }
}

TEST(Premultiplication, single_pixels_are_treated_as_whole_vectors_are) {
    const Bytes in = everyPair();
    for (const Operation& operation : operations) {
        Bytes out(in.size());
        for (std::size_t i = 0; i < in.size(); i += 4)
            operation.run(in.data() + i, out.data() + i, 1);
        EXPECT_TRUE(out == plainly(operation, in)) << operation.name;
    }
}

TEST(Premultiplication, every_length_is_done_in_full_and_no_further_in_place_too) {
    const Bytes all = everyPair();
    for (const Operation& operation : operations) {
        for (const std::size_t pixels : lengths) {
            // One byte off alignment.
            const Bytes in(all.begin() + 70001,
                           all.begin() + 70001 + static_cast<std::ptrdiff_t>(4 * pixels));
            Bytes out(in.size() + 2, 0xee);
            operation.run(in.data(), out.data() + 1, pixels);
            ASSERT_EQ(out.front(), 0xee) << operation.name;
            ASSERT_EQ(out.back(), 0xee) << operation.name;
            const Bytes expected = plainly(operation, in);
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin() + 1)) << operation.name;
            Bytes inPlace = in;
            operation.run(inPlace.data(), inPlace.data(), pixels);
            ASSERT_TRUE(inPlace == expected) << operation.name;
        }
    }
}
