#include "imaging/svg/SvgDrawings.h"

#include "base/LongWork.h"
#include "imaging/image/PictureReader.h"
#include "imaging/svg/SvgPlan.h"

#include <QElapsedTimer>
#include <QThread>

#include <poll.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

using SvgPipe::Request;
using SvgPipe::Transfer;
using SvgPlan::areSame;
using SvgPlan::bytesOf;

namespace {

constexpr qint64 leastMemory = qint64{1} << 30;
constexpr qint64 rastersOfMemory = 6;
/// How many bytes of drawings may be ahead of the caller.
constexpr qint64 mostBytesAhead = 48 << 20;
constexpr std::size_t mostDrawingsAhead = 32;
/// How much longer than its limit the program waits for a worker that stands still.
constexpr double patienceBeyondLimit = 0.7;

/// What a drawing costs, in bytes: a part is the same at every size.
double workOf(const Request& request) {
    constexpr double samePart = 4 * 128.0 * 128;
    return static_cast<double>(bytesOf(request)) + samePart;
}

const Request& requestOf(const Request& request) {
    return request;
}

template <typename Drawing>
const Request& requestOf(const Drawing& drawing) {
    return drawing.request;
}

/// Where a list has that drawing, or its end.
template <typename List>
auto placeOf(const Request& request, List& list) {
    return std::ranges::find_if(list, [&](const auto& one) { return areSame(requestOf(one), request); });
}

} // namespace

/// One call from outside. It decides where the count of time begins.
class SvgDrawings::Operation {
  public:
    explicit Operation(SvgDrawings& drawings) : m_drawings(drawings), m_request(SvgRequest::open()) {
        const double time = drawings.processorTime();
        if (m_request != nullptr) {
            drawings.m_origin = time - m_request->processorTime;
            drawings.m_waited = m_request->waitingTime;
            drawings.m_seconds = m_request->seconds();
        } else {
            drawings.m_seconds = drawings.m_limit.seconds;
            if (drawings.m_limit.isForEachDrawing) {
                drawings.m_origin = time;
                drawings.m_waited = 0;
            }
        }
        for (Station& station : drawings.m_stations)
            station.worker->allow({drawings.m_seconds - (time - drawings.m_origin), drawings.m_memory});
    }
    ~Operation() {
        if (m_request == nullptr)
            return;
        m_request->processorTime = m_drawings.processorTime() - m_drawings.m_origin;
        m_request->waitingTime = m_drawings.m_waited;
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

  private:
    SvgDrawings& m_drawings;
    SvgRequest* m_request;
};

SvgDrawings::SvgDrawings(QByteArray document, QByteArray fonts, const Options& options)
    : m_document(std::move(document)),
      m_fonts(std::move(fonts)),
      m_limit(options.time),
      m_memory(leastMemory) {
    // Where each drawing counts on its own, nobody knows which of them will be asked for.
    if (!m_limit.isForEachDrawing)
        m_renders = options.renders;
    // With a fit the drawings are no larger.
    for (const Request& icon : SvgPlan::drawings({m_renders.sizes.value_or(std::vector<QSizeF>())}, {}))
        m_memory = std::max(m_memory, rastersOfMemory * bytesOf(icon));
}

Result<std::unique_ptr<SvgDrawings>> SvgDrawings::open(const QByteArray& document, const QByteArray& fonts,
                                                       const Options& options) {
    std::unique_ptr<SvgDrawings> drawings(new SvgDrawings(document, fonts, options));
    const Operation operation(*drawings);
    if (const Result<Done> ready = drawings->prepare(); !ready) {
        drawings->stop();
        return ready.error();
    }
    return drawings;
}

Result<Done> SvgDrawings::prepare() {
    if (Result<Done> started = startWorkers(); !started)
        return started;
    if (Result<Done> read = readSize(m_stations.front()); !read)
        return read;
    m_planned = SvgPlan::drawings(m_renders, m_size);
    // The first drawing tells whether the document can be drawn. Where none is planned, a small one does.
    if (m_planned.empty()) {
        constexpr int probeSide = 16;
        const AxisMapping probeAxis = fillingMapping(0, probeSide);
        const Result<QImage> probe = drawn(*SvgPlan::drawing(probeAxis, probeAxis));
        return probe ? Result<Done>(Done{}) : probe.error();
    }
    const Request first = m_planned.front();
    if (Result<Done> asked = askAhead(); !asked)
        return asked;
    if (Result<Done> finished = finish(first); !finished)
        return finished;
    const auto found = placeOf(first, m_finished);
    return found != m_finished.end() && found->isRefused ? Result<Done>(found->error) : Done{};
}

Result<Done> SvgDrawings::startWorkers() {
    const bool isShared = m_renders.sizes && m_renders.sizes->size() > 1 && QThread::idealThreadCount() > 1;
    for (int i = 0; i < (isShared ? 2 : 1); ++i) {
        Result<std::unique_ptr<SvgWorker>> worker =
            SvgWorker::start({m_seconds - (processorTime() - m_origin), m_memory});
        if (!worker)
            return worker.error();
        m_stations.push_back({std::move(*worker), {}});
    }
    for (Station& station : m_stations) {
        // The first worker looks for the fonts.
        const QByteArray fonts = std::exchange(m_fonts, {});
        Request request;
        request.documentBytes = static_cast<std::uint64_t>(m_document.size());
        request.fontBytes = static_cast<std::uint64_t>(fonts.size());
        for (const std::span<const std::byte> bytes :
             {SvgPipe::bytesOf(request), std::as_bytes(std::span(m_document)),
              std::as_bytes(std::span(fonts))}) {
            const Transfer transfer = send(station.worker->socket(), bytes, patience());
            if (transfer != Transfer::Done)
                return failed(station, transfer);
        }
    }
    return askAhead();
}

/// Takes the answer to the document.
Result<Done> SvgDrawings::readSize(Station& station) {
    SvgPipe::Answer answer;
    const Transfer transfer = receive(station.worker->socket(), SvgPipe::writableBytesOf(answer), patience());
    if (transfer != Transfer::Done || !isValid(answer) || answer.kind == SvgPipe::AnswerKind::Drawn)
        return failed(station, transfer);
    if (answer.kind == SvgPipe::AnswerKind::Refused)
        return refusal(answer);
    station.hasSize = true;
    m_size = QSizeF(answer.width, answer.height);
    m_missingFonts |= answer.missingFonts;
    return Done{};
}

/// Asks the worker with the least work for a drawing.
Result<Done> SvgDrawings::ask(const Request& request) {
    Result<SharedRaster> raster = SharedRaster::create(QSize(request.width, request.height));
    if (!raster)
        return raster.error();
    Station& station = *std::ranges::min_element(m_stations, {}, &Station::work);
    const Transfer transfer =
        send(station.worker->socket(), SvgPipe::bytesOf(request), patience(), raster->descriptor());
    if (transfer != Transfer::Done)
        return failed(station, transfer);
    station.work += workOf(request);
    station.asked.push_back({request, std::move(*raster)});
    return Done{};
}

Result<Done> SvgDrawings::askAhead() {
    qint64 bytes = 0;
    std::size_t count = m_finished.size();
    for (const Drawing& drawing : m_finished)
        bytes += bytesOf(drawing.request);
    for (const Station& station : m_stations) {
        count += station.asked.size();
        for (const Drawing& drawing : station.asked)
            bytes += bytesOf(drawing.request);
    }
    while (!m_planned.empty() && count < mostDrawingsAhead &&
           (count == 0 || bytes + bytesOf(m_planned.front()) <= mostBytesAhead)) {
        const Request request = m_planned.front();
        m_planned.pop_front();
        if (const Result<Done> asked = ask(request); !asked)
            return asked.error().code == ErrorCode::OutOfMemory ? Result<Done>(Done{}) : asked;
        bytes += bytesOf(request);
        ++count;
    }
    return Done{};
}

/// Waits for the next drawing of a worker.
Result<Done> SvgDrawings::finishNext(Station& station) {
    if (!station.hasSize) {
        if (Result<Done> read = readSize(station); !read)
            return read;
    }
    SvgPipe::Answer answer;
    const Transfer transfer = receive(station.worker->socket(), SvgPipe::writableBytesOf(answer), patience());
    if (transfer != Transfer::Done || !isValid(answer) || answer.kind == SvgPipe::AnswerKind::Size)
        return failed(station, transfer);
    Drawing drawing = std::move(station.asked.front());
    station.asked.pop_front();
    drawing.isRefused = answer.kind == SvgPipe::AnswerKind::Refused;
    if (drawing.isRefused)
        drawing.error = refusal(answer);
    m_finished.push_back(std::move(drawing));
    return Done{};
}

/// Waits until a drawing that was asked for is finished.
Result<Done> SvgDrawings::finish(const Request& request) {
    for (Station& station : m_stations) {
        while (placeOf(request, m_finished) == m_finished.end() &&
               placeOf(request, station.asked) != station.asked.end()) {
            if (Result<Done> finished = finishNext(station); !finished)
                return finished;
        }
    }
    return Done{};
}

Result<QImage> SvgDrawings::drawn(const Request& request) {
    if (m_stations.empty()) {
        if (const Result<Done> started = startWorkers(); !started)
            return started.error();
    }
    const bool isAsked = placeOf(request, m_finished) != m_finished.end() ||
                         std::ranges::any_of(m_stations, [&](const Station& station) {
                             return placeOf(request, station.asked) != station.asked.end();
                         });
    if (!isAsked) {
        if (const auto planned = placeOf(request, m_planned); planned != m_planned.end())
            m_planned.erase(planned);
        if (const Result<Done> asked = ask(request); !asked)
            return asked.error();
    }
    if (const Result<Done> finished = finish(request); !finished)
        return finished.error();
    const auto found = placeOf(request, m_finished);
    const Drawing drawing = std::move(*found);
    m_finished.erase(found);
    if (const Result<Done> asked = askAhead(); !asked)
        return asked.error();
    return drawing.isRefused ? Result<QImage>(drawing.error) : drawing.raster.image();
}

Result<QImage> SvgDrawings::draw(const Request& drawing) {
    m_memory = std::max(m_memory, rastersOfMemory * bytesOf(drawing));
    const Operation operation(*this);
    // What has ended the workers once would do so again. All drawings have failed then, unless each counts on
    // its own.
    const auto failure = std::ranges::find_if(m_failures, [&](const Failure& one) {
        return one.seconds >= m_seconds && (areSame(one.request, drawing) || !m_limit.isForEachDrawing);
    });
    if (failure != m_failures.end())
        return failure->error;
    Result<QImage> raster = drawn(drawing);
    // A font that has failed in a drawing fails in all later ones of that process, whatever their size. So
    // this one is the first of another process.
    if (!raster && !m_isBroken && raster.error().code == ErrorCode::Damaged) {
        stop();
        m_planned.clear();
        raster = drawn(drawing);
    }
    // A worker that refuses one drawing may well make another.
    if (std::exchange(m_isBroken, false)) {
        stop();
        if (!m_limit.isForEachDrawing || raster.error().code == ErrorCode::TakesTooLong)
            m_failures.push_back({drawing, m_seconds, raster.error()});
    }
    return raster;
}

Error SvgDrawings::tooSlow() const {
    return {ErrorCode::TakesTooLong,
            QStringLiteral("the picture takes more than %1 s to draw").arg(m_seconds)};
}

Error SvgDrawings::tooMuchMemory() const {
    constexpr double bytesOfGiB = 1 << 30;
    return {ErrorCode::Unsupported, QStringLiteral("the picture takes more memory to draw than %1 GiB")
                                        .arg(static_cast<double>(m_memory) / bytesOfGiB, 0, 'g', 3)};
}

Error SvgDrawings::refusal(const SvgPipe::Answer& answer) const {
    const QString text =
        QString::fromUtf8(answer.text.data(), static_cast<qsizetype>(answer.textLength)).simplified();
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

/// What the pipe's failure was. `transfer` is Done where the worker's answer makes no sense.
Error SvgDrawings::failed(Station& station, Transfer transfer) {
    m_isBroken = true;
    if (transfer == Transfer::TimedOut)
        return tooSlow();
    const auto early = [](const QString& how) {
        return Error{
            ErrorCode::Unsupported,
            QStringLiteral("the SVG document can't be drawn: the program that draws it %1").arg(how)};
    };
    if (transfer == Transfer::Done)
        return early(QStringLiteral("gave a wrong answer"));
    switch (station.worker->end(true)) {
    case SvgWorker::End::Memory:
        return tooMuchMemory();
    case SvgWorker::End::Time:
        return tooSlow();
    case SvgWorker::End::Unstarted:
        return {ErrorCode::Unsupported,
                QStringLiteral("the SVG document can't be drawn, since the program %1 can't be started")
                    .arg(SvgWorker::programPath())};
    case SvgWorker::End::Other:
        break;
    }
    return early(QStringLiteral("ended early (%1)").arg(station.worker->endText()));
}

/// Ends all workers; their processor time stays counted.
void SvgDrawings::stop() {
    for (Station& station : m_stations) {
        station.worker->end(false);
        m_endedTime += station.worker->processorTime();
    }
    m_stations.clear();
    m_finished.clear();
}

double SvgDrawings::processorTime() const {
    double time = m_endedTime;
    for (const Station& station : m_stations)
        time += station.worker->processorTime();
    return time;
}

SvgPipe::Patience SvgDrawings::patience() {
    return {[](int socket, short event, void* context) {
                return static_cast<SvgDrawings*>(context)->wait(socket, event);
            },
            this};
}

/// Waits until the socket is ready. False where the workers have had their time, or one is silent for longer
/// than that.
bool SvgDrawings::wait(int socket, short event) {
    const SvgWorker& worker = *std::ranges::find_if(m_stations, [&](const Station& station) {
                                   return station.worker->socket() == socket;
                               })->worker;
    for (;;) {
        LongWork::step();
        if (processorTime() - m_origin >= m_seconds || m_waited >= m_seconds + patienceBeyondLimit)
            return false;
        constexpr int sliceMilliseconds = 50;
        constexpr double nanosecond = 1e-9;
        const double timeBefore = worker.processorTime();
        pollfd waiting{socket, event, 0};
        QElapsedTimer timer;
        timer.start();
        const bool isReady = ::poll(&waiting, 1, sliceMilliseconds) > 0;
        const double passed = static_cast<double>(timer.nsecsElapsed()) * nanosecond;
        // On a busy machine a worker also waits for a processor. That is not its fault.
        const double worked = std::clamp(worker.processorTime() - timeBefore, 0.0, passed);
        m_waited += isReady || worker.wantsProcessor() ? worked : passed;
        if (isReady)
            return true;
    }
}
