#pragma once

#include <QByteArray>
#include <QColor>
#include <QStringList>

#include <functional>

/// The bytes of a file in tests/data/pictures; empty if there is no file of that name.
QByteArray fixture(const char* name);

/// The patterns that most files in tests/data/pictures show. No two pixels are the same, so every exchange of
/// pixels or channels is seen. tests/data/make-pictures.py draws the same patterns.
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

/// Expects that the file is read as exactly these pixels, with these warnings and no others.
void expectPicture(const QByteArray& bytes, const ColorAt& expected, int w = width, int h = height,
                   const QStringList& warnings = {});
/// The same of a file in tests/data/pictures.
void expectPicture(const char* name, const ColorAt& expected, int w = width, int h = height,
                   const QStringList& warnings = {});

} // namespace Fixtures
