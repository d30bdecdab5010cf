#pragma once

#include <QByteArray>
#include <QColor>

#include <functional>

/// The bytes of a file in tests/data/pictures; empty where there is none of that name.
QByteArray fixture(const char* name);

/// What most files in tests/data/pictures show: patterns that no two pixels share, so that every exchange of
/// pixels or channels is seen. make-pictures.py there draws the same.
namespace Fixtures {

inline constexpr int width = 11;
inline constexpr int height = 7;

using ColorAt = std::function<QColor(int x, int y)>;

QColor color(int x, int y);
int alpha(int x, int y);
/// `color` with `alpha`.
QColor translucent(int x, int y);
int greyLevel(int x, int y);
QColor grey(int x, int y);
/// The index of a pixel in pictures with a palette of `count` colours, and the palette.
int paletteIndex(int x, int y, int count);
QColor paletteColor(int i);

/// Expects that the file is read without a warning, as exactly these pixels.
void expectPicture(const char* name, const ColorAt& expected, int w = width, int h = height);

} // namespace Fixtures
