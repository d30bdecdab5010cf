#pragma once

#include "platform/RowResampler.h"

#include <QSize>
#include <QSizeF>

#include <optional>
#include <vector>

/// The copies of a picture in smaller sizes that renders draw from, so that small ones need not read all of
/// it.
namespace ReducedCopies {

/// The sides of the next copy: each is halved on its own while that leaves enough of it. Odd ones round up.
/// `size` itself where there is no further copy.
QSize nextSize(const QSize& size);

/// Of the sizes of a picture and its copies the largest that a render of at most `largestRender` pixels draws
/// from: the smallest that has twice as many each way. `size` itself where nothing is known of the renders.
QSize largestNeeded(const QSize& size, const std::optional<QSizeF>& largestRender);

/// Makes one of the copies of a picture that comes row by row from its top, by way of those in between,
/// without ever keeping the whole of it.
class Stream {
  public:
    /// The copy goes into `target`, which must outlive this and has the size of a copy of a picture of `size`
    /// pixels. May throw std::bad_alloc.
    Stream(const QSize& size, QImage& target);

    /// Where the next row of the picture belongs, 4 bytes for each pixel.
    std::uint8_t* nextRow() { return m_steps.front().nextRow(); }
    void addRow() { addRow(0); }

  private:
    void addRow(std::size_t step);

    std::vector<StreamResampler> m_steps;
    std::uint8_t* m_out;
    qsizetype m_rowBytes;
};

} // namespace ReducedCopies
