#pragma once

#include "imaging/pixels/RowResampler.h"

#include <QImage>
#include <QSize>

#include <cstdint>
#include <vector>

/// Makes one of the reduced copies of a picture that comes row by row from its top, by way of those in
/// between, without ever keeping the whole of it.
class ReducingStream {
  public:
    /// The copy goes into `target`, which must outlive this and have the size of a copy of a picture of
    /// `size` pixels, as ReducedCopies tells them. May throw std::bad_alloc.
    ReducingStream(const QSize& size, QImage& target);

    /// Where the next row of the picture belongs, 4 bytes for each pixel.
    std::uint8_t* nextRow() { return m_steps.front().nextRow(); }
    void addRow() { addRow(0); }

  private:
    void addRow(std::size_t step);

    std::vector<StreamResampler> m_steps;
    std::uint8_t* m_out;
    qsizetype m_rowBytes;
};
