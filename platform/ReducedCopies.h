#pragma once

#include "platform/RowResampler.h"

#include <QSize>
#include <QSizeF>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// The copies of a picture in smaller sizes that renders draw from, so that small ones need not read all of
/// it.
namespace ReducedCopies {

/// The sides of the next copy: each is halved on its own while that leaves enough of it. Odd ones round up.
/// `size` itself where there is no further copy.
QSize nextSize(const QSize& size);

/// Which of some sizes of one picture a render of `pixels` draws from: that of just as many pixels; else the
/// smallest of at least twice as many in each direction, or as many as there are, so that one proper
/// reduction is left to do. 0 where there are none.
std::size_t bestOf(std::span<const QSize> sizes, const QSizeF& pixels);

/// Every size, in pixels, that a picture will be drawn in, where that is known.
using Renders = std::optional<std::vector<QSizeF>>;

/// The largest size, of a picture of `size` and its copies, that one of the renders draws from; `size` itself
/// where nothing is known of them.
QSize largestNeeded(const QSize& size, const Renders& renders);

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
