#include "mainwindow/LabelSides.h"

#include <QLabel>

void alignLabels(QWidget& window) {
    const bool isMirrored = window.layoutDirection() == Qt::RightToLeft;
    for (QLabel* label : window.findChildren<QLabel*>()) {
        const Qt::Alignment sides = label->alignment();
        // One that is in the middle stays there; one that is aligned already too.
        if (sides.testFlag(Qt::AlignHCenter) || sides.testFlag(Qt::AlignAbsolute))
            continue;
        const bool isTrailing = sides.testFlag(Qt::AlignRight);
        label->setAlignment((isTrailing != isMirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                            (sides & Qt::AlignVertical_Mask));
    }
}
