#include "imaging/svg/SvgDrawings.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/SvgPlan.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <utility>

using namespace SvgPipe;

namespace {

constexpr qint64 leastAddressSpace = qint64{1} << 30;
constexpr std::size_t rastersOfAddressSpace = 6;
/// How many bytes of drawings may be ahead of the caller.
constexpr std::size_t mostBytesAhead = 48 << 20;
constexpr std::size_t mostDrawingsAhead = 32;
/// How much longer than its limit the program waits for a worker that stands still.
constexpr double patienceBeyondLimit = 0.7;

qint64 addressSpaceFor(const Request& drawing) {
    return std::max(leastAddressSpace, static_cast<qint64>(rastersOfAddressSpace * drawing.bytes()));
}

QString textOf(const Answer& answer) {
    return QString::fromUtf8(answer.text.data(),
                             static_cast<qsizetype>(::strnlen(answer.text.data(), answer.text.size())));
}

Error notDrawn(const QString& how) {
    return {ErrorCode::Unsupported,
            QStringLiteral("the SVG document can't be drawn: the program that draws it ") + how};
}

Error tooSlow(double seconds) {
    return {ErrorCode::TakesTooLong, QStringLiteral("the picture takes more than %1 s to draw").arg(seconds)};
}

} // namespace

SvgDrawings::SvgDrawings(const QByteArray& document, const Options& options)
    : m_memory(document),
      m_limit(options.time),
      m_addressSpace(leastAddressSpace),
      m_ownCount{options.time.seconds} {
    // Where each drawing counts on its own, nobody knows which of them will be asked for.
    if (!m_limit.isForEachDrawing)
        m_renders = options.renders;
    // With a fit the drawings are no larger.
    for (const Request& icon : SvgPlan::drawings({m_renders.sizes.value_or(std::vector<QSizeF>())}, {}))
        m_addressSpace = std::max(m_addressSpace, addressSpaceFor(icon));
}

Result<std::unique_ptr<SvgDrawings>> SvgDrawings::open(const QByteArray& document, const Options& options) {
    std::unique_ptr<SvgDrawings> drawings(new SvgDrawings(document, options));
    if (!drawings->m_memory.isOpen())
        return outOfMemory();
    drawings->beginCount();
    // A small drawing tells whether the document can be drawn.
    const Result<QImage> small = drawings->taken({16, 16, {0, 0, 16, 16}});
    return small ? Result(std::move(drawings)) : small.error();
}

/// Starts the workers, which read the document.
Result<Done> SvgDrawings::start() {
    const bool isShared = m_renders.sizes && m_renders.sizes->size() > 1 && QThread::idealThreadCount() > 1;
    // With more than the first drawing may take, not each one needs a new worker.
    constexpr double moreSeconds = 20;
    const double seconds = secondsLeft() + (m_limit.isForEachDrawing ? moreSeconds : 0);
    while (m_workers.size() < (isShared ? 2 : 1)) {
        Result<std::unique_ptr<SvgWorker>> worker = SvgWorker::start(seconds, m_addressSpace, m_memory);
        if (!worker)
            return stop(worker.error());
        m_workers.push_back(std::move(*worker));
    }
    for (const std::unique_ptr<SvgWorker>& worker : m_workers) {
        const Result<Answer> read = answer(*worker, AnswerKind::Size);
        if (!read)
            return stop(read.error());
        if (m_size.isEmpty())
            m_planned = SvgPlan::drawings(m_renders, QSizeF(read->width, read->height));
        m_size = QSizeF(read->width, read->height);
    }
    return Done{};
}

/// Asks the worker with the least work for a drawing. False where memory is short.
bool SvgDrawings::ask(Request request) {
    if (!m_memory.take(request))
        return false;
    SvgWorker& worker =
        **std::ranges::min_element(m_workers, {}, [](const auto& one) { return one->work(); });
    worker.ask(request);
    m_drawings.push_back({request, &worker});
    return true;
}

void SvgDrawings::askAhead() {
    std::size_t bytes = 0;
    for (const Drawing& drawing : m_drawings)
        bytes += drawing.request.bytes();
    while (!m_planned.empty() && m_drawings.size() < mostDrawingsAhead) {
        bytes += m_planned.front().bytes();
        if (bytes > mostBytesAhead || !ask(m_planned.front()))
            return;
        m_planned.pop_front();
    }
}

Result<QImage> SvgDrawings::taken(const Request& request) {
    if (m_workers.empty()) {
        if (const Result<Done> started = start(); !started)
            return started.error();
    }
    const auto isWanted = [&request](const Request& other) { return other.drawsAs(request); };
    auto wanted = std::ranges::find_if(m_drawings, isWanted, &Drawing::request);
    if (wanted == m_drawings.end()) {
        if (const auto planned = std::ranges::find_if(m_planned, isWanted); planned != m_planned.end())
            m_planned.erase(planned);
        if (!ask(request))
            return noMemoryForPixels(request.width, request.height);
        wanted = std::prev(m_drawings.end());
    }
    askAhead();
    // A worker answers in the order in which it was asked.
    while (!wanted->answer) {
        const auto next = std::ranges::find_if(m_drawings, [&](const Drawing& drawing) {
            return drawing.worker == wanted->worker && !drawing.answer;
        });
        const Result<Answer> made = answer(*wanted->worker, AnswerKind::Drawn);
        if (m_workers.empty())
            return made.error();
        next->answer = made;
    }
    const Drawing drawing = *wanted;
    m_drawings.erase(wanted);
    m_memory.giveBack(drawing.request);
    if (!*drawing.answer)
        return drawing.answer->error();
    for (const QString& family : textOf(**drawing.answer).split(u'\n', Qt::SkipEmptyParts)) {
        if (const QString name = family.simplified(); !m_missingFonts.contains(name))
            m_missingFonts << name;
    }
    return m_memory.image(drawing.request);
}

Result<QImage> SvgDrawings::draw(const Request& request) {
    beginCount();
    const qint64 addressSpace = std::max(m_addressSpace, addressSpaceFor(request));
    if (addressSpace > std::exchange(m_addressSpace, addressSpace))
        stop();
    // What has ended the workers once would do so again. All drawings have failed then, unless each counts on
    // its own.
    const auto failure = std::ranges::find_if(m_failures, [&](const Failure& one) {
        return one.seconds >= m_count->limit && (!m_limit.isForEachDrawing || one.request.drawsAs(request));
    });
    if (failure != m_failures.end())
        return failure->error;
    Result<QImage> raster = taken(request);
    // A font that has failed in a drawing fails in all later ones of that process, whatever their size. So
    // this one is the first of another process.
    if (!raster && !m_workers.empty() && raster.error().code == ErrorCode::Damaged) {
        stop();
        m_planned.clear();
        raster = taken(request);
    }
    // A worker that refuses one drawing may well make another.
    const bool isBroken = !raster && m_workers.empty();
    if (isBroken && (!m_limit.isForEachDrawing || raster.error().code == ErrorCode::TakesTooLong))
        m_failures.push_back({request, m_count->limit, raster.error()});
    return raster;
}

/// Waits for the next answer of a worker. Ends all workers where there is none that can be used.
Result<Answer> SvgDrawings::answer(SvgWorker& worker, AnswerKind expected) {
    if (!wait(worker))
        return stop(tooSlow(m_count->limit));
    const std::optional<Answer> answer = worker.answer();
    if (!answer)
        return stop(ended(worker.process()));
    if (!isValid(*answer) || (answer->kind != expected && answer->kind < AnswerKind::Damaged))
        return stop(notDrawn(QStringLiteral("gave a wrong answer")));
    if (answer->kind == AnswerKind::Damaged)
        return PictureReader::damaged(QStringLiteral("SVG"), textOf(*answer).simplified());
    if (answer->kind == AnswerKind::BeyondLimit)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("the SVG document goes beyond a limit of librsvg: %1")
                         .arg(textOf(*answer).simplified())};
    return *answer;
}

/// How a worker has ended without an answer.
Error SvgDrawings::ended(const QProcess& process) const {
    const int number = process.exitCode(); // of a signal, where one has ended it
    const bool isSignal = process.exitStatus() == QProcess::CrashExit;
    if (isSignal && number == SIGXCPU)
        return tooSlow(m_count->limit);
    const QString how =
        isSignal ? QStringLiteral("ended early (signal %1)") : QStringLiteral("ended early (status %1)");
    if (isSignal || number != memoryStatus)
        return notDrawn(how.arg(number));
    constexpr double bytesOfGiB = 1 << 30;
    return {ErrorCode::Unsupported, QStringLiteral("the picture takes more memory to draw than %1 GiB")
                                        .arg(static_cast<double>(m_addressSpace) / bytesOfGiB, 0, 'g', 3)};
}

/// Ends all workers; their processor time stays counted. Hands back the error that is the reason, if any.
Error SvgDrawings::stop(Error error) {
    count();
    m_workers.clear();
    for (const Drawing& drawing : std::exchange(m_drawings, {}))
        m_memory.giveBack(drawing.request);
    return error;
}

/// Decides where the count of time begins.
void SvgDrawings::beginCount() {
    m_count = &m_ownCount;
    count();
    if (m_limit.isForEachDrawing)
        m_ownCount = {m_limit.seconds};
    if (SvgRequest* request = SvgRequest::open())
        m_count = request;
    // A worker keeps the limits with which it has started.
    if (std::ranges::any_of(m_workers, [this](auto& one) { return one->secondsLeft() < secondsLeft(); }))
        stop();
}

/// Adds what the workers have taken since the last call.
void SvgDrawings::count() {
    for (const std::unique_ptr<SvgWorker>& worker : m_workers)
        m_count->processorTime += worker->newTime();
}

double SvgDrawings::secondsLeft() const {
    return std::max(0.0, m_count->limit - m_count->processorTime);
}

/// Waits until a worker answers or ends. False where the workers have had their time, or this one stands
/// still for longer than that.
bool SvgDrawings::wait(SvgWorker& worker) {
    for (bool isReady = false;;) {
        count();
        if (m_count->processorTime >= m_count->limit ||
            m_count->waitingTime >= m_count->limit + patienceBeyondLimit)
            return false;
        if (isReady)
            return true;
        LongWork::step();
        constexpr int sliceMilliseconds = 50;
        constexpr double nanosecond = 1e-9;
        const double timeBefore = worker.processorTime();
        QElapsedTimer timer;
        timer.start();
        isReady = worker.wait(sliceMilliseconds);
        const double passed = static_cast<double>(timer.nsecsElapsed()) * nanosecond;
        // On a busy machine a worker gets little of a processor, and that is not its fault.
        constexpr double leastPart = 0.01;
        if (!isReady && worker.processorTime() - timeBefore < leastPart * passed)
            m_count->waitingTime += passed;
    }
}
