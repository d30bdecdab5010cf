#include "imaging/pixels/ReducingStream.h"

#include "base/ShortMemory.h"
#include "base/StageTimes.h"
#include "imaging/pixels/ReducedCopies.h"

ReducingStream::ReducingStream(const QSize& size, QImage& target)
    : m_out(target.bits()), m_rowBytes(target.bytesPerLine()) {
    for (QSize from = size; from != target.size();) {
        const QSize to = ReducedCopies::nextSize(from);
        m_steps.emplace_back(fillingMapping(from.width(), to.width()),
                             fillingMapping(from.height(), to.height()));
        from = to;
    }
}

Result<ReducingStream> ReducingStream::create(const QSize& size, QImage& target) {
    return unlessMemoryIsShort([&] { return ReducingStream(size, target); });
}

void ReducingStream::addRow(std::size_t step) {
    const StageTimes::Timer timer(Stage::Reduce);
    m_steps[step].addRow();
    while (m_steps[step].hasResult()) {
        const bool isLast = step + 1 == m_steps.size();
        m_steps[step].takeResult(isLast ? m_out : m_steps[step + 1].nextRow());
        if (isLast)
            m_out += m_rowBytes;
        else
            addRow(step + 1);
    }
}
