#pragma once

#include "base/Result.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/svg/SvgMemory.h"
#include "imaging/svg/SvgTime.h"
#include "imaging/svg/SvgWorker.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QStringList>

#include <deque>
#include <list>
#include <memory>
#include <optional>
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

    /// Starts the workers, has the document read, and draws it once. `document` is not compressed.
    /// TakesTooLong, Damaged, Unsupported, OutOfMemory.
    static Result<std::unique_ptr<SvgDrawings>> open(const QByteArray& document, const Options& options);

    /// The document's size in CSS pixels.
    const QSizeF& size() const { return m_size; }

    /// The font families that its texts have asked for in vain, each once.
    const QStringList& missingFonts() const { return m_missingFonts; }

    /// The document on a new raster of width × height pixels, stretched into the viewport there. Fails as
    /// `open` does, and at once where the same drawing has failed within the same limit. It may wait for the
    /// limit and one second more.
    Result<QImage> draw(const SvgPipe::Request& request);

  private:
    /// A drawing that a worker was asked for.
    struct Drawing {
        SvgPipe::Request request;
        SvgWorker* worker = nullptr;
        std::optional<Result<SvgPipe::Answer>> answer = {};
    };
    struct Failure {
        SvgPipe::Request request;
        double seconds;
        Error error;
    };

    SvgDrawings(const QByteArray& document, const Options& options);

    Result<Done> start();
    bool ask(SvgPipe::Request request);
    void askAhead();
    Result<QImage> taken(const SvgPipe::Request& request);
    Result<SvgPipe::Answer> answer(SvgWorker& worker, SvgPipe::AnswerKind expected);
    Error ended(const QProcess& process) const;
    Error stop(Error error = {});

    void beginCount();
    void count();
    double secondsLeft() const;
    bool wait(SvgWorker& worker);

    SvgMemory m_memory;
    ReducedCopies::Renders m_renders;
    QSizeF m_size;
    QStringList m_missingFonts;
    std::deque<SvgPipe::Request> m_planned;
    std::vector<std::unique_ptr<SvgWorker>> m_workers; ///< none at first, and where one has failed
    std::list<Drawing> m_drawings;                     ///< in the order in which the workers were asked
    std::vector<Failure> m_failures;

    SvgTimeLimit m_limit;
    qint64 m_addressSpace;
    SvgCount m_ownCount;
    SvgCount* m_count = &m_ownCount; ///< the one that goes on
};
