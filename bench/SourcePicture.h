#pragma once

#include <array>
#include <cstdint>
#include <vector>

/// A picture that measurements start from: the same at each run and, at each size, of the same scene. Made a
/// row at a time, so that the largest need no memory.
class SourcePicture {
  public:
    enum class Kind {
        Logo,  ///< flat shapes and gradients with antialiased edges on a transparent ground
        Photo, ///< a landscape with textures, edges and a camera's grain; no alpha
    };
    using Ridges = std::array<double, 4>;

    SourcePicture(Kind kind, int width, int height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    bool hasAlpha() const { return m_kind == Kind::Logo; }

    /// The pixels of a row, as straight RGBA bytes or, without alpha, RGB.
    void row(int y, std::uint8_t* out) const;

  private:
    /// A pixel's middle, from -1 to 1.
    static double place(int pixel, int side);

    Kind m_kind;
    int m_width;
    int m_height;
    std::vector<Ridges> m_ridges; ///< of a photo, how high its hills reach in each column
};
