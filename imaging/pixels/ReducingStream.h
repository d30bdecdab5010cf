#pragma once

#include "base/Result.h"
#include "imaging/pixels/RowResampler.h"

#include <QImage>
#include <QSize>

#include <cstdint>
#include <vector>

/// Makes a reduced copy of a picture that comes row by row from its top. Each row passes through the copies
/// in between. Neither these copies nor the picture are ever kept whole.
class ReducingStream {
  public:
    /// Writes the copy into `target`, whose pixels outlive this object. `size` is the picture's; the size of
    /// `target` is that of one of its copies (ReducedCopies::nextSize). OutOfMemory is the only error.
    static Result<ReducingStream> create(const QSize& size, QImage& target);

    /// Where the caller writes the next row of the picture before `addRow`, 4 bytes for each pixel.
    std::uint8_t* nextRow() { return m_steps.front().nextRow(); }
    void addRow() { addRow(0); }

  private:
    ReducingStream(const QSize& size, QImage& target);

    void addRow(std::size_t step);

    std::vector<StreamResampler> m_steps;
    std::uint8_t* m_out;
    qsizetype m_rowBytes;
};
