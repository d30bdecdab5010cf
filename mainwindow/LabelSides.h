#pragma once

class QWidget;

/// Aligns all labels in `window` by the window's direction. A label's own text may have another direction.
void alignLabels(QWidget& window);
