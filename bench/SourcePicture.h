#pragma once

#include <array>
#include <cstdint>
#include <vector>

/// A picture that measurements start from. It is the same at each run, and each size shows the same scene.
/// Rows are made one at a time, so a large picture needs no memory for its pixels.
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

    /// Writes the pixels of row `y` to `out`: straight RGBA bytes, or RGB without alpha.
    void row(int y, std::uint8_t* out) const;

  private:
    /// The middle of a pixel, from -1 to 1.
    static double place(int pixel, int side);

    Kind m_kind;
    int m_width;
    int m_height;
    std::vector<Ridges> m_ridges; ///< how high a photo's hills reach in each column
};
