#pragma once

#include "base/Result.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/svg/SharedRaster.h"
#include "imaging/svg/SvgTime.h"
#include "imaging/svg/SvgWorker.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>

#include <deque>
#include <memory>
#include <vector>

/// Draws one SVG document by workers. Where the sizes of its drawings are known, the workers draw ahead, in
/// the order in which the sizes stand: two workers on a machine with two or more cores. Each drawing that is
/// made serves one caller. For the main thread.
class SvgDrawings {
  public:
    struct Options {
        ReducedCopies::Renders renders = {}; ///< the icons that it will be drawn on
        SvgTimeLimit time;
    };

    /// Starts the workers, has the document read, and draws it once. `document` is not compressed. `fonts`
    /// are lists of font families as a worker reads them. TakesTooLong, Damaged, Unsupported, OutOfMemory.
    static Result<std::unique_ptr<SvgDrawings>> open(const QByteArray& document, const QByteArray& fonts,
                                                     const Options& options);

    /// The document's size in CSS pixels.
    const QSizeF& size() const { return m_size; }

    /// The lists of which no font is installed; bit 0 is the first.
    std::uint64_t missingFonts() const { return m_missingFonts; }

    /// The document on a new raster of width × height pixels, stretched into the viewport there. Fails as
    /// `open` does, and at once where the same drawing has failed within the same limit. It may wait for the
    /// limit and one second more.
    Result<QImage> draw(const SvgPipe::Request& drawing);

  private:
    struct Drawing {
        SvgPipe::Request request;
        SharedRaster raster;
        bool isRefused = false; ///< once it is finished; `error` tells why
        Error error = {ErrorCode::Unsupported, {}};
    };
    /// A worker with the drawings that it was asked for, in that order.
    struct Station {
        std::unique_ptr<SvgWorker> worker;
        std::deque<Drawing> asked;
        bool hasSize = false; ///< whether the answer to the document has come
        double work = 0;      ///< of all drawings that it was asked for
    };
    struct Failure {
        SvgPipe::Request request;
        double seconds;
        Error error;
    };
    class Operation;

    SvgDrawings(QByteArray document, QByteArray fonts, const Options& options);

    Result<Done> prepare();
    Result<Done> startWorkers();
    Result<Done> readSize(Station& station);
    Result<Done> ask(const SvgPipe::Request& request);
    Result<Done> askAhead();
    Result<Done> finishNext(Station& station);
    Result<Done> finish(const SvgPipe::Request& request);
    Result<QImage> drawn(const SvgPipe::Request& request);
    Error refusal(const SvgPipe::Answer& answer) const;
    Error failed(Station& station, SvgPipe::Transfer transfer);
    Error tooSlow() const;
    Error tooMuchMemory() const;
    void stop();

    double processorTime() const;
    SvgPipe::Patience patience();
    bool wait(int socket, short event);

    QByteArray m_document;
    QByteArray m_fonts; ///< until a worker has been asked
    std::uint64_t m_missingFonts = 0;
    SvgTimeLimit m_limit;
    ReducedCopies::Renders m_renders;
    QSizeF m_size;
    qint64 m_memory;
    std::deque<SvgPipe::Request> m_planned;
    std::vector<Station> m_stations;
    std::vector<Drawing> m_finished;
    std::vector<Failure> m_failures;
    bool m_isBroken = false; ///< whether the pipe to a worker has failed
    double m_endedTime = 0;  ///< the processor time of workers that are gone
    // Of the count that goes on: where it began, how far it may go, and how long the program has waited
    // while the workers had a processor or wanted none.
    double m_origin = 0;
    double m_seconds = 0;
    double m_waited = 0;
};
