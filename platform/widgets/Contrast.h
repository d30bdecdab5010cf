#pragma once

#include <QColor>
#include <QPalette>

/// The contrast ratio of two opaque colours, from 1 to 21, as in the Web Content Accessibility
/// Guidelines 2.1.
double contrastRatio(const QColor& a, const QColor& b);

/// The least contrast of a control's edge with what the control stands on.
inline constexpr double leastEdgeContrast = 3;

/// Whether text is lighter than its ground.
bool isDark(const QPalette& palette);

/// A colour for edges of controls that stand on the role `ground`, between that and the text's colour.
QColor edgeColor(const QPalette& palette, QPalette::ColorRole ground = QPalette::Window);
