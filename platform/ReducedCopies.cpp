#include "platform/ReducedCopies.h"

#include "platform/StageTimes.h"

QSize ReducedCopies::nextSize(const QSize& size) {
    // Below this no icon gains from a further copy.
    constexpr int smallestSide = 32;
    const auto reduced = [](int side) { return side >= 2 * smallestSide ? (side + 1) / 2 : side; };
    return {reduced(size.width()), reduced(size.height())};
}

QSize ReducedCopies::largestNeeded(const QSize& size, const std::optional<QSizeF>& largestRender) {
    QSize needed = size;
    while (largestRender) {
        const QSize next = nextSize(needed);
        // Written so that a size that is not a number keeps the whole.
        const bool isEnough =
            next.width() >= 2 * largestRender->width() && next.height() >= 2 * largestRender->height();
        if (next == needed || !isEnough)
            break;
        needed = next;
    }
    return needed;
}

ReducedCopies::Stream::Stream(const QSize& size, QImage& target)
    : m_out(target.bits()), m_rowBytes(target.bytesPerLine()) {
    for (QSize from = size; from != target.size();) {
        const QSize to = nextSize(from);
        m_steps.emplace_back(fillingMapping(from.width(), to.width()),
                             fillingMapping(from.height(), to.height()));
        from = to;
    }
}

void ReducedCopies::Stream::addRow(std::size_t step) {
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
