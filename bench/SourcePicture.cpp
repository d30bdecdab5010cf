#include "bench/SourcePicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>

namespace {

constexpr double pi = 3.14159265358979323846;

struct Rgba {
    double r = 0;
    double g = 0;
    double b = 0;
    double a = 0;
};

Rgba mixed(const Rgba& from, const Rgba& to, double t) {
    const auto between = [t](double x, double y) { return x + (y - x) * t; };
    return {between(from.r, to.r), between(from.g, to.g), between(from.b, to.b), between(from.a, to.a)};
}

double smooth(double edge0, double edge1, double x) {
    const double t = std::clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// Paints `color` over `below` with a coverage from 0 to 1. Colours are straight.
void paint(Rgba& below, const Rgba& color, double coverage) {
    const double over = color.a * std::clamp(coverage, 0.0, 1.0);
    const double a = over + below.a * (1 - over);
    if (a <= 0)
        return;
    const auto both = [&](double upper, double lower) {
        return (upper * over + lower * below.a * (1 - over)) / a;
    };
    below = {both(color.r, below.r), both(color.g, below.g), both(color.b, below.b), a};
}

double roundedBox(double x, double y, double half, double radius) {
    const double dx = std::abs(x) - half + radius;
    const double dy = std::abs(y) - half + radius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - radius;
}

double segment(double x, double y, double x0, double y0, double x1, double y1) {
    const double t = std::clamp(((x - x0) * (x1 - x0) + (y - y0) * (y1 - y0)) /
                                    ((x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0)),
                                0.0, 1.0);
    return std::hypot(x - x0 - t * (x1 - x0), y - y0 - t * (y1 - y0));
}

/// Flat shapes and gradients with antialiased edges on a transparent ground. x and y go from -1 to 1;
/// `pixels` is how many pixels a length of 1 has.
Rgba logo(double x, double y, double pixels) {
    Rgba color;
    const auto covered = [pixels](double distance) { return 0.5 - distance * pixels; };
    const double body = roundedBox(x, y, 0.86, 0.36);
    paint(color, {0, 0, 0, 0.30}, 1 - smooth(-0.04, 0.12, roundedBox(x, y - 0.03, 0.86, 0.36)));
    const double along = (x * 0.42 + y * 0.91 + 1.1) / 2.2;
    paint(color, mixed({46, 196, 182, 1}, {13, 66, 125, 1}, std::clamp(along, 0.0, 1.0)), covered(body));
    const double sheen = std::clamp(1 - std::hypot(x + 0.6, y + 0.9) / 2.0, 0.0, 1.0);
    paint(color, {255, 240, 190, 0.55 * sheen}, covered(body));
    const double depth = std::clamp(1 - std::hypot(x - 0.9, y - 0.7) / 1.6, 0.0, 1.0);
    paint(color, {60, 20, 120, 0.7 * depth}, covered(body));
    const double disc = std::hypot(x - 0.10, y + 0.12) - 0.50;
    const double glow = std::clamp(std::hypot(x + 0.10, y + 0.34) / 0.86, 0.0, 1.0);
    paint(color, mixed({255, 214, 112, 1}, {231, 76, 60, 1}, glow), covered(disc));
    paint(color, {255, 255, 255, 1}, covered(std::abs(disc - 0.05) - 0.022));
    const double letter =
        std::min({segment(x, y, -0.42, 0.52, 0.0, -0.36), segment(x, y, 0.0, -0.36, 0.42, 0.52),
                  segment(x, y, -0.24, 0.16, 0.24, 0.16)});
    paint(color, mixed({62, 76, 104, 1}, {16, 22, 34, 1}, std::clamp(0.5 + 0.8 * y, 0.0, 1.0)),
          covered(letter - 0.085));
    for (int i = 0; i < 5; ++i) {
        const double turn = 2 * pi * i / 5 + 0.4;
        const double dot = std::hypot(x - 0.68 * std::cos(turn), y - 0.68 * std::sin(turn)) - 0.055;
        paint(color, {255, 255, 255, 0.85}, covered(dot));
    }
    return color;
}

std::uint32_t hashed(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t h = x * 0x9e3779b1U ^ y * 0x85ebca77U ^ seed * 0xc2b2ae3dU;
    h = (h ^ h >> 15U) * 0x2c1b3c6dU;
    h = (h ^ h >> 12U) * 0x297a2d39U;
    return h ^ h >> 15U;
}

/// A pseudorandom value from -1 to 1.
double lattice(int x, int y, std::uint32_t seed) {
    return hashed(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), seed) / 2147483647.5 - 1;
}

double noise(double x, double y, std::uint32_t seed) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    const double u = smooth(0, 1, x - left);
    const double v = smooth(0, 1, y - top);
    const double upper = lattice(column, row, seed) * (1 - u) + lattice(column + 1, row, seed) * u;
    const double lower = lattice(column, row + 1, seed) * (1 - u) + lattice(column + 1, row + 1, seed) * u;
    return upper * (1 - v) + lower * v;
}

/// A sum of octaves of noise. Each octave has half the size and half the strength of the one before, so power
/// falls with the square of the frequency, as in pictures of nature.
double octaves(double x, double y, int count, std::uint32_t seed) {
    double sum = 0;
    double strength = 1;
    for (int i = 0; i < count; ++i) {
        sum += strength * noise(x, y, seed + static_cast<std::uint32_t>(i));
        x = 2 * x + 17.3;
        y = 2 * y - 9.1;
        strength /= 2;
    }
    return sum;
}

using Ridges = SourcePicture::Ridges;
constexpr std::size_t ridgeCount = std::tuple_size_v<Ridges>;

std::uint32_t ridgeSeed(std::size_t i) {
    return static_cast<std::uint32_t>(100 * (i + 1));
}

/// How many octaves the pixels can show.
int finest(double pixels) {
    return std::clamp(static_cast<int>(std::log2(pixels)) - 1, 4, 12);
}

/// How high the hills reach at `x`; the farthest comes first.
Ridges ridgesAt(double x, double pixels) {
    Ridges ridges{};
    for (std::size_t i = 0; i < ridgeCount; ++i)
        ridges[i] = -0.45 + 0.38 * static_cast<double>(i) +
                    0.3 * octaves(x * static_cast<double>(i + 1), 0.5, finest(pixels), ridgeSeed(i));
    return ridges;
}

/// Hills in front of a sky: different textures, edges between them, and a camera's grain in each pixel.
Rgba photo(double x, double y, double pixels, int column, int row, const Ridges& ridges) {
    const auto depth = [&](std::size_t i) { return (y - ridges[i]) * pixels; };
    std::size_t nearest = ridgeCount;
    while (nearest > 0 && depth(nearest - 1) < 1)
        --nearest;
    // What is behind the nearest hill can't be seen.
    Rgba color;
    if (nearest == 0) {
        const double sky = octaves(x * 1.5 + 3, y * 2.5, finest(pixels) - 2, 11);
        color =
            mixed({92, 138, 196, 1}, {226, 229, 232, 1}, std::clamp(0.45 + 0.5 * sky + 0.3 * y, 0.0, 1.0));
    }
    static constexpr std::array<Rgba, ridgeCount> dark{
        {{74, 88, 104, 1}, {58, 74, 52, 1}, {66, 54, 38, 1}, {34, 40, 26, 1}}};
    static constexpr std::array<Rgba, ridgeCount> light{
        {{148, 156, 160, 1}, {136, 148, 88, 1}, {188, 160, 118, 1}, {118, 132, 74, 1}}};
    for (std::size_t i = nearest == 0 ? 0 : nearest - 1; i < ridgeCount; ++i) {
        if (depth(i) < -1)
            continue;
        const std::uint32_t seed = ridgeSeed(i) + 20;
        const auto scale = static_cast<double>(i + 1);
        const double shape = octaves(x * 3 * scale, y * 5 * scale, finest(pixels), seed);
        const double toLight = octaves(x * 3 * scale + 0.02, y * 5 * scale + 0.03, finest(pixels), seed);
        const double shade = std::clamp(0.5 + 0.35 * shape + 2.2 * (toLight - shape), 0.0, 1.0);
        paint(color, mixed(dark[i], light[i], shade), depth(i) + 0.5);
    }
    // Roughly the grain of a small sensor. It is stronger where there is more light, and a little of it is in
    // colour.
    const double light255 = 0.3 * color.r + 0.6 * color.g + 0.1 * color.b;
    const double strength = 4.6 + 6.2 * std::sqrt(light255 / 255);
    const auto grain = [&](std::uint32_t seed) {
        return lattice(column, row, seed) + lattice(column, row, seed + 1) + lattice(column, row, seed + 2);
    };
    const double grey = strength * grain(900);
    color.r += grey + 0.4 * strength * grain(910);
    color.g += grey + 0.4 * strength * grain(920);
    color.b += grey + 0.4 * strength * grain(930);
    return color;
}

std::uint8_t sample(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

} // namespace

SourcePicture::SourcePicture(Kind kind, int width, int height)
    : m_kind(kind), m_width(width), m_height(height) {
    for (int x = 0; x < width && kind == Kind::Photo; ++x)
        m_ridges.push_back(ridgesAt(place(x, width), width / 2.0));
}

double SourcePicture::place(int pixel, int side) {
    return (2 * pixel + 1.0) / side - 1;
}

void SourcePicture::row(int y, std::uint8_t* out) const {
    const double pixels = m_width / 2.0;
    const double top = place(y, m_height);
    for (int x = 0; x < m_width; ++x) {
        const double left = place(x, m_width);
        const Rgba color = m_kind == Kind::Logo
                               ? logo(left, top, pixels)
                               : photo(left, top, pixels, x, y, m_ridges[static_cast<std::size_t>(x)]);
        *out++ = sample(color.r);
        *out++ = sample(color.g);
        *out++ = sample(color.b);
        if (hasAlpha())
            *out++ = sample(255 * color.a);
    }
}
