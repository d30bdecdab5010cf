#pragma once

#include "base/Result.h"

#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <vector>

/// A line of text in a picture. It is drawn with the system's fonts, as part of an SVG document, so that no
/// window system is needed.
struct ProofTextLine {
    enum class Font { Plain, Bold, Fixed };

    QPoint baseline; ///< where the line begins
    QString text;
    QString color; ///< as in CSS
    int size = 13; ///< of the letters, in pixels
    Font font = Font::Plain;
};

/// The lines on a transparent raster of that size; what does not fit is cut off. Fails as ImageSource does.
Result<QImage> drawnText(const std::vector<ProofTextLine>& lines, const QSize& size);

/// `text` in lines of at most `cells` letters, broken behind spaces and punctuation where there are any. An
/// East Asian letter counts as two.
QStringList wrappedText(const QString& text, int cells);
