#include "imaging/svg/SvgDrawings.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/SvgPlan.h"
#include "imaging/svgpipe/SvgPipe.h"

#include <QElapsedTimer>
#include <QThread>

#include <poll.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <span>
#include <utility>

using SvgPipe::Answer;
using SvgPipe::AnswerKind;
using SvgPipe::Request;

namespace {

constexpr qint64 leastMemory = qint64{1} << 30;
constexpr std::size_t rastersOfMemory = 6;
/// How many bytes of drawings may be ahead of the caller.
constexpr std::size_t mostBytesAhead = 48 << 20;
constexpr std::size_t mostDrawingsAhead = 32;
/// How much longer than its limit the program waits for a worker that stands still.
constexpr double patienceBeyondLimit = 0.7;

qint64 memoryFor(const Request& drawing) {
    return std::max(leastMemory, static_cast<qint64>(rastersOfMemory * drawing.sharedBytes()));
}

/// What a drawing costs, in bytes: a part is the same at every size.
double workOf(const Request& drawing) {
    constexpr double samePart = 4 * 128.0 * 128;
    return static_cast<double>(drawing.sharedBytes()) + samePart;
}

QString textOf(const Answer& answer) {
    return QString::fromUtf8(answer.text.data(), static_cast<qsizetype>(answer.textLength));
}

Error notDrawn(const QString& how) {
    return {ErrorCode::Unsupported,
            QStringLiteral("the SVG document can't be drawn: the program that draws it ") + how};
}

Error tooSlow(double seconds) {
    return {ErrorCode::TakesTooLong, QStringLiteral("the picture takes more than %1 s to draw").arg(seconds)};
}

/// The pixels as an image on the same memory.
Result<QImage> imageOn(SharedMemory pixels, const Request& drawing) {
    Result<QImage> image = unlessMemoryIsShort([&]() -> Result<QImage> {
        auto memory = std::make_unique<SharedMemory>(std::move(pixels));
        std::byte* bytes = memory->map(drawing.sharedBytes());
        if (bytes == nullptr)
            return outOfMemory();
        QImage raster(
            reinterpret_cast<uchar*>(bytes), drawing.width, drawing.height,
            QImage::Format_RGBA8888_Premultiplied,
            [](void* owned) { delete static_cast<SharedMemory*>(owned); }, memory.get());
        if (raster.isNull())
            return outOfMemory();
        memory.release(); // NOLINT(bugprone-unused-return-value): it is the image's now
        return raster;
    });
    return image ? image : noMemoryForPixels(drawing.width, drawing.height);
}

} // namespace

SvgDrawings::SvgDrawings(SharedMemory document, std::size_t documentBytes, const Options& options)
    : m_document(std::move(document)),
      m_documentBytes(documentBytes),
      m_limit(options.time),
      m_memory(leastMemory),
      m_ownCount{options.time.seconds} {
    // Where each drawing counts on its own, nobody knows which of them will be asked for.
    if (!m_limit.isForEachDrawing)
        m_renders = options.renders;
    // With a fit the drawings are no larger.
    for (const Request& icon : SvgPlan::drawings({m_renders.sizes.value_or(std::vector<QSizeF>())}, {}))
        m_memory = std::max(m_memory, memoryFor(icon));
}

Result<std::unique_ptr<SvgDrawings>> SvgDrawings::open(const QByteArray& document, const Options& options) {
    SharedMemory shared = SharedMemory::holding(std::as_bytes(std::span(document)));
    if (!shared.isOpen())
        return outOfMemory();
    std::unique_ptr<SvgDrawings> drawings(
        new SvgDrawings(std::move(shared), static_cast<std::size_t>(document.size()), options));
    drawings->beginCount();
    const Result<Done> ready = drawings->prepare();
    return ready ? Result(std::move(drawings)) : ready.error();
}

Result<Done> SvgDrawings::prepare() {
    if (Result<Done> started = start(); !started)
        return started;
    m_planned = SvgPlan::drawings(m_renders, m_size);
    // The first drawing tells whether the document can be drawn. Where none is planned, a small one does.
    constexpr int probeSide = 16;
    const AxisMapping probeAxis = fillingMapping(0, probeSide);
    const bool isProbe = m_planned.empty();
    const Request first = isProbe ? *SvgPlan::drawing(probeAxis, probeAxis) : m_planned.front();
    if (Result<Done> asked = askAhead(); !asked)
        return asked;
    const Result<Place> place = finished(first);
    if (!place)
        return place.error();
    const std::optional<Error> refusal = (*place)->refusal;
    if (isProbe)
        m_drawings.erase(*place);
    return refusal ? Result<Done>(*refusal) : Done{};
}

/// Starts the workers, and has the document read.
Result<Done> SvgDrawings::start() {
    const bool isShared = m_renders.sizes && m_renders.sizes->size() > 1 && QThread::idealThreadCount() > 1;
    for (int i = 0; i < (isShared ? 2 : 1); ++i) {
        Result<std::unique_ptr<SvgWorker>> worker = SvgWorker::start(limits());
        if (!worker)
            return broken(worker.error());
        m_stations.push_back({std::move(*worker)});
    }
    Request request;
    request.documentBytes = m_documentBytes;
    for (const Station& station : m_stations) {
        if (!SvgPipe::send(station.worker->socket(), SvgPipe::bytesOf(request), m_document.descriptor()))
            return ended(*station.worker);
    }
    for (const Station& station : m_stations) {
        const Result<Answer> read = answer(*station.worker, AnswerKind::Size);
        if (!read)
            return broken(read.error());
        m_size = QSizeF(read->width, read->height);
    }
    return askAhead();
}

/// Asks the worker with the least work for a drawing.
Result<Done> SvgDrawings::ask(const Request& request) {
    SharedMemory pixels = SharedMemory::create(request.sharedBytes());
    if (!pixels.isOpen())
        return noMemoryForPixels(request.width, request.height);
    const auto station = std::ranges::min_element(m_stations, {}, &Station::work);
    if (!SvgPipe::send(station->worker->socket(), SvgPipe::bytesOf(request), pixels.descriptor()))
        return ended(*station->worker);
    station->work += workOf(request);
    m_drawings.push_back(
        {request, std::move(pixels), static_cast<std::size_t>(station - m_stations.begin())});
    return Done{};
}

Result<Done> SvgDrawings::askAhead() {
    std::size_t bytes = 0;
    for (const Drawing& drawing : m_drawings)
        bytes += drawing.request.sharedBytes();
    while (!m_planned.empty() && m_drawings.size() < mostDrawingsAhead &&
           (m_drawings.empty() || bytes + m_planned.front().sharedBytes() <= mostBytesAhead)) {
        const Request request = m_planned.front();
        m_planned.pop_front();
        if (const Result<Done> asked = ask(request); !asked)
            return asked.error().code == ErrorCode::OutOfMemory ? Result<Done>(Done{}) : asked;
        bytes += request.sharedBytes();
    }
    return Done{};
}

/// Waits until the drawing is finished. It is asked for where it was not before.
Result<SvgDrawings::Place> SvgDrawings::finished(const Request& request) {
    auto place = std::ranges::find(m_drawings, request, &Drawing::request);
    if (place == m_drawings.end()) {
        if (const auto planned = std::ranges::find(m_planned, request); planned != m_planned.end())
            m_planned.erase(planned);
        if (const Result<Done> asked = ask(request); !asked)
            return asked.error();
        place = std::prev(m_drawings.end());
    }
    // A worker answers in the order in which it was asked.
    while (!place->isFinished) {
        const auto next = std::ranges::find_if(m_drawings, [&](const Drawing& drawing) {
            return drawing.station == place->station && !drawing.isFinished;
        });
        const Result<Answer> made = answer(*m_stations[place->station].worker, AnswerKind::Drawn);
        if (m_stations.empty())
            return made.error();
        next->isFinished = true;
        if (made)
            takeMissingFonts(*made);
        else
            next->refusal = made.error();
    }
    return place;
}

Result<QImage> SvgDrawings::taken(const Request& request) {
    if (m_stations.empty()) {
        if (const Result<Done> started = start(); !started)
            return started.error();
    }
    const Result<Place> place = finished(request);
    if (!place)
        return place.error();
    Drawing drawing = std::move(**place);
    m_drawings.erase(*place);
    if (const Result<Done> asked = askAhead(); !asked)
        return asked.error();
    return drawing.refusal ? *drawing.refusal : imageOn(std::move(drawing.pixels), request);
}

void SvgDrawings::takeMissingFonts(const Answer& answer) {
    for (const QString& family : textOf(answer).split(u'\n', Qt::SkipEmptyParts)) {
        if (const QString name = family.simplified(); !m_missingFonts.contains(name))
            m_missingFonts << name;
    }
}

Result<QImage> SvgDrawings::draw(const Request& request) {
    m_memory = std::max(m_memory, memoryFor(request));
    beginCount();
    // What has ended the workers once would do so again. All drawings have failed then, unless each counts on
    // its own.
    const auto failure = std::ranges::find_if(m_failures, [&](const Failure& one) {
        return one.seconds >= m_count->limit && (one.request == request || !m_limit.isForEachDrawing);
    });
    if (failure != m_failures.end())
        return failure->error;
    Result<QImage> raster = taken(request);
    // A font that has failed in a drawing fails in all later ones of that process, whatever their size. So
    // this one is the first of another process.
    if (!raster && !m_stations.empty() && raster.error().code == ErrorCode::Damaged) {
        stop();
        m_planned.clear();
        raster = taken(request);
    }
    // A worker that refuses one drawing may well make another.
    const bool isBroken = !raster && m_stations.empty();
    if (isBroken && (!m_limit.isForEachDrawing || raster.error().code == ErrorCode::TakesTooLong))
        m_failures.push_back({request, m_count->limit, raster.error()});
    return raster;
}

/// Waits for the next answer of a worker.
Result<Answer> SvgDrawings::answer(SvgWorker& worker, AnswerKind expected) {
    if (!wait(worker))
        return broken(tooSlow(m_count->limit));
    Answer answer;
    const std::size_t bytes = SvgPipe::receive(worker.socket(), SvgPipe::writableBytesOf(answer));
    if (bytes == 0)
        return ended(worker);
    const bool isRefused = answer.kind == AnswerKind::Refused;
    if (bytes < sizeof answer || !isValid(answer) || (answer.kind != expected && !isRefused))
        return broken(notDrawn(QStringLiteral("gave a wrong answer")));
    return isRefused ? Result<Answer>(refusal(answer)) : answer;
}

/// How a worker has ended that has closed the pipe.
Error SvgDrawings::ended(SvgWorker& worker) {
    const int status = worker.status();
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return broken(signal == SIGXCPU ? tooSlow(m_count->limit)
                                        : notDrawn(QStringLiteral("ended early (signal %1)").arg(signal)));
    }
    const int number = WEXITSTATUS(status);
    return broken(number == SvgPipe::memoryStatus
                      ? tooMuchMemory()
                      : notDrawn(QStringLiteral("ended early (status %1)").arg(number)));
}

/// What a failure of the pipe leaves: no workers.
Error SvgDrawings::broken(Error error) {
    stop();
    return error;
}

Error SvgDrawings::refusal(const Answer& answer) const {
    const QString text = textOf(answer).simplified();
    switch (answer.refusal) {
    case SvgPipe::Refusal::Memory:
        return tooMuchMemory();
    case SvgPipe::Refusal::Limit:
        return {ErrorCode::Unsupported,
                QStringLiteral("the SVG document goes beyond a limit of librsvg: %1").arg(text)};
    case SvgPipe::Refusal::Empty:
        return PictureReader::damaged(QStringLiteral("SVG"), QStringLiteral("its size is empty"));
    case SvgPipe::Refusal::Damaged:
        break;
    }
    return PictureReader::damaged(QStringLiteral("SVG"), text);
}

Error SvgDrawings::tooMuchMemory() const {
    constexpr double bytesOfGiB = 1 << 30;
    return {ErrorCode::Unsupported, QStringLiteral("the picture takes more memory to draw than %1 GiB")
                                        .arg(static_cast<double>(m_memory) / bytesOfGiB, 0, 'g', 3)};
}

/// Ends all workers; their processor time stays counted.
void SvgDrawings::stop() {
    m_endedTime = processorTime();
    m_stations.clear();
    m_drawings.clear();
}

/// Decides where the count of time begins.
void SvgDrawings::beginCount() {
    SvgRequest* request = SvgRequest::open();
    m_count = request != nullptr ? request : &m_ownCount;
    if (request == nullptr && m_limit.isForEachDrawing)
        m_ownCount = {m_limit.seconds};
    if (request != nullptr || m_limit.isForEachDrawing)
        m_countedTime = processorTime();
    for (const Station& station : m_stations)
        station.worker->allow(limits());
}

double SvgDrawings::processorTime() const {
    double time = m_endedTime;
    for (const Station& station : m_stations)
        time += station.worker->processorTime();
    return time;
}

SvgWorker::Limits SvgDrawings::limits() const {
    return {std::max(0.0, m_count->limit - m_count->processorTime), m_memory};
}

/// Waits until a worker answers. False where the workers have had their time, or this one stands still for
/// longer than that.
bool SvgDrawings::wait(const SvgWorker& worker) {
    for (bool isReady = false;;) {
        const double time = processorTime();
        m_count->processorTime += time - std::exchange(m_countedTime, time);
        if (m_count->processorTime >= m_count->limit ||
            m_count->waitingTime >= m_count->limit + patienceBeyondLimit)
            return false;
        if (isReady)
            return true;
        LongWork::step();
        constexpr int sliceMilliseconds = 50;
        constexpr double nanosecond = 1e-9;
        const double timeBefore = worker.processorTime();
        pollfd waiting{worker.socket(), POLLIN, 0};
        QElapsedTimer timer;
        timer.start();
        isReady = ::poll(&waiting, 1, sliceMilliseconds) > 0;
        const double passed = static_cast<double>(timer.nsecsElapsed()) * nanosecond;
        // On a busy machine a worker gets little of a processor, and that is not its fault.
        constexpr double leastPart = 0.01;
        if (!isReady && worker.processorTime() - timeBefore < leastPart * passed)
            m_count->waitingTime += passed;
    }
}
