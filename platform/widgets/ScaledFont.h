#pragma once

#include <QFont>

/// `font` at `factor` times its size, in points or in pixels, as the size was given.
inline QFont scaledFont(QFont font, double factor) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(font.pixelSize() * factor));
    return font;
}
