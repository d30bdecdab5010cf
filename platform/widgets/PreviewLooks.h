#pragma once

#include "platform/widgets/ScaledFont.h"

#include <QColor>
#include <QFont>
#include <QWidget>

/// How icons look in a preview, whatever the window's theme is.
namespace PreviewLooks {

inline constexpr QColor lightGround(250, 250, 250);
inline constexpr QColor darkGround(30, 30, 32);

/// The font below an icon. In a large font too, numbers below the smallest icons stand apart.
inline QFont captionFont(const QWidget& preview) {
    constexpr double scale = 0.85;
    return scaledFont(preview.font(), scale);
}

} // namespace PreviewLooks
