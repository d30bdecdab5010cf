#include "imaging/svg/SvgDocument.h"
#include "imaging/svg/SvgWorker.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"
#include "tests/support/Slowness.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

const QByteArray document =
    "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/></svg>";

/// A drawing that takes some milliseconds.
QByteArray blurredDocument() {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='400' height='400'><filter id='f'><feGaussianBlur "
           "stdDeviation='9'/></filter><rect width='300' height='300' filter='url(#f)'/></svg>";
}

Result<QImage> drawn(const SvgDocument& svg, int side) {
    return svg.rendered({0, 0, static_cast<double>(side), side}, {0, 0, static_cast<double>(side), side});
}

/// The first error of a document that is loaded and drawn three times.
Error errorOf(const QByteArray& bytes, const SvgDrawings::Options& options) {
    const Result<std::shared_ptr<const SvgDocument>> svg = SvgDocument::fromBytes(bytes, options);
    if (!svg)
        return svg.error();
    for (const int side : {16, 32, 48}) {
        if (const Result<QImage> raster = drawn(**svg, side); !raster)
            return raster.error();
    }
    ADD_FAILURE() << "it was drawn";
    return {ErrorCode::NotFound, {}};
}

/// The shortest time of three, in milliseconds: another program may have the processors at one of them.
template <typename Function>
qint64 soonest(const Function& function) {
    qint64 shortest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 3 && shortest >= 2000; ++i) {
        QElapsedTimer timer;
        timer.start();
        function();
        shortest = std::min(shortest, timer.elapsed());
    }
    return shortest;
}

SvgDrawings::Options limited(double seconds, bool isForEachDrawing = false) {
    return {{}, {seconds, isForEachDrawing}};
}

void expectTooSlow(const SvgDrawings::Options& options) {
    const Error error = errorOf(document, options);
    EXPECT_EQ(error.code, ErrorCode::TakesTooLong) << error.sentence.toStdString();
    EXPECT_EQ(error.sentence, QStringLiteral("the picture takes more than 1 s to draw"));
}

/// Keeps every processor busy with six threads while it lives.
class BusyMachine {
  public:
    BusyMachine() {
        for (unsigned i = 0; i < 6 * std::thread::hardware_concurrency(); ++i)
            m_threads.emplace_back([this] {
                while (!m_isOver) {
                }
            });
    }
    ~BusyMachine() {
        m_isOver = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }
    BusyMachine(const BusyMachine&) = delete;
    BusyMachine& operator=(const BusyMachine&) = delete;

  private:
    std::atomic<bool> m_isOver = false;
    std::vector<std::thread> m_threads;
};

Result<std::unique_ptr<SvgWorker>> started() {
    return SvgWorker::start(60, qint64{1} << 30, SvgMemory(document));
}

class FakeWorker : public testing::Test {
  public:
    FakeWorker() { SvgWorker::useProgram(QStringLiteral(FAKE_WORKER)); }
    ~FakeWorker() override {
        SvgWorker::useProgram({});
        qunsetenv("FAKE_WORKER");
    }
};

} // namespace

TEST_F(FakeWorker, one_that_behaves_is_waited_for) {
    const Result<std::shared_ptr<const SvgDocument>> svg = SvgDocument::fromBytes(document);
    ASSERT_TRUE(svg) << svg.error().sentence.toStdString();
    EXPECT_EQ((*svg)->size(), QSizeF(9, 9));
    EXPECT_TRUE(drawn(**svg, 32));
}

TEST_F(FakeWorker, its_end_at_any_message_is_one_error) {
    for (const char* how : {"exits", "dies", "closes", "halves"}) {
        for (int message = 0; message < 4; ++message) {
            SCOPED_TRACE(std::string(how) + std::to_string(message));
            qputenv("FAKE_WORKER", QByteArray(how) + ' ' + QByteArray::number(message));
            for (const bool isAhead : {false, true}) {
                SvgDrawings::Options options = limited(1);
                if (isAhead)
                    options.renders = {{QSizeF(16, 16), QSizeF(32, 32), QSizeF(48, 48)}};
                const Error error = errorOf(document, options);
                EXPECT_TRUE(error.sentence.startsWith(
                                QLatin1String("the SVG document can't be drawn: the program")) ||
                            error.sentence.startsWith(QLatin1String("the picture takes")))
                    << error.sentence.toStdString();
            }
        }
    }
}

TEST_F(FakeWorker, a_wrong_answer_at_any_message_is_an_error) {
    for (const char* how : {"mumbles", "misreads", "is-unknown", "is-infinite", "floods"}) {
        for (int message = 1; message < 4; ++message) {
            SCOPED_TRACE(std::string(how) + std::to_string(message));
            qputenv("FAKE_WORKER", QByteArray(how) + ' ' + QByteArray::number(message));
            const Error error = errorOf(document, limited(1));
            EXPECT_TRUE(error.sentence.contains(QLatin1String("gave a wrong answer")))
                << error.sentence.toStdString();
        }
    }
}

TEST_F(FakeWorker, one_that_stops_or_sleeps_is_waited_for_a_second_beyond_the_limit) {
    for (const char* how : {"stops", "sleeps"}) {
        for (const int message : {0, 1, 2, 3}) {
            SCOPED_TRACE(std::string(how) + std::to_string(message));
            qputenv("FAKE_WORKER", QByteArray(how) + ' ' + QByteArray::number(message));
            EXPECT_LT(soonest([] { expectTooSlow(limited(1)); }), 2000 * slowness);
        }
    }
    qputenv("FAKE_WORKER", "stops 2");
    SvgDrawings::Options ahead = limited(1);
    ahead.renders = {{QSizeF(16, 16), QSizeF(32, 32), QSizeF(48, 48)}};
    EXPECT_LT(soonest([&] { expectTooSlow(ahead); }), 2000 * slowness);
}

TEST_F(FakeWorker, one_that_spins_gets_no_more_processor_time_than_a_second_beyond_the_limit) {
    for (const int message : {0, 2, 3}) {
        SCOPED_TRACE(message);
        qputenv("FAKE_WORKER", "spins " + QByteArray::number(message));
        const double before = secondsOfChildren();
        expectTooSlow(limited(1));
        EXPECT_LT(secondsOfChildren() - before, 2);
    }
}

TEST_F(FakeWorker, the_time_of_one_that_ends_by_itself_stays_counted) {
    qputenv("FAKE_WORKER", "tires 3");
    const Result<std::shared_ptr<const SvgDocument>> svg =
        SvgDocument::fromBytes(document, limited(60, true));
    ASSERT_TRUE(svg);
    const SvgRequest request(60);
    EXPECT_FALSE(drawn(**svg, 32));
    EXPECT_GE(request.processorTime, 0.4);
}

TEST_F(FakeWorker, its_time_is_known_after_its_end) {
    qputenv("FAKE_WORKER", "tires 0");
    const Result<std::unique_ptr<SvgWorker>> worker = started();
    ASSERT_TRUE(worker);
    while (!(*worker)->wait(10))
        (*worker)->processorTime();
    EXPECT_FALSE((*worker)->answer());
    EXPECT_EQ((*worker)->process().exitCode(), 1);
    EXPECT_GE((*worker)->processorTime(), 0.4);
}

TEST_F(FakeWorker, one_that_floods_a_program_that_does_not_wait_for_it_is_ended) {
    qputenv("FAKE_WORKER", "floods 0");
    const Result<std::unique_ptr<SvgWorker>> worker = started();
    ASSERT_TRUE(worker);
    const QProcess& process = (*worker)->process();
    QElapsedTimer timer;
    timer.start();
    while (process.state() != QProcess::NotRunning && timer.elapsed() < 5000 * slowness)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_LT(process.bytesAvailable(), 1 << 20);
}

TEST_F(FakeWorker, no_other_program_gets_its_memory) {
    const SvgMemory memory(document);
    const Result<std::unique_ptr<SvgWorker>> worker = SvgWorker::start(60, qint64{1} << 30, memory);
    ASSERT_TRUE(worker);
    EXPECT_EQ(::fcntl(memory.descriptor(), F_GETFD), FD_CLOEXEC);
}

TEST(SvgWorker, a_missing_program_is_told_with_its_path) {
    SvgWorker::useProgram(QStringLiteral("/nowhere/tobrimax-svg"));
    const Result<std::shared_ptr<const SvgDocument>> svg = SvgDocument::fromBytes(document);
    SvgWorker::useProgram({});
    ASSERT_FALSE(svg);
    EXPECT_EQ(svg.error().code, ErrorCode::Unsupported);
    EXPECT_EQ(
        svg.error().sentence,
        QStringLiteral("the SVG document can't be drawn, since the program /nowhere/tobrimax-svg can't be "
                       "started (No such file or directory)"));
}

TEST(SvgWorker, a_slow_document_ends_with_the_limit) {
    const double before = secondsOfChildren();
    const Error error = errorOf(Pictures::slowSvg(), limited(1));
    EXPECT_EQ(error.code, ErrorCode::TakesTooLong) << error.sentence.toStdString();
    EXPECT_LT(secondsOfChildren() - before, 2);
}

TEST(SvgWorker, a_busy_machine_takes_nothing_from_the_limit) {
    const auto picture = [] { return SvgDocument::fromBytes(blurredDocument(), limited(60, true)); };
    int count = 0;
    double seconds = 0;
    {
        const Result<std::shared_ptr<const SvgDocument>> svg = picture();
        const SvgRequest request(60);
        for (; request.processorTime < 0.3; ++count)
            ASSERT_TRUE(svg && drawn(**svg, 400));
        seconds = request.processorTime;
    }
    const BusyMachine others;
    const Result<std::shared_ptr<const SvgDocument>> svg = picture();
    const SvgRequest request(2 * seconds);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(svg && drawn(**svg, 400)) << i << " of " << count;
    // The machine was busy indeed.
    EXPECT_GT(timer.elapsed(), static_cast<qint64>(2000 * seconds));
}

TEST(SvgWorker, a_document_that_failed_fails_at_once_the_next_time) {
    const Result<std::shared_ptr<const SvgDocument>> svg =
        SvgDocument::fromBytes(blurredDocument(), limited(1));
    ASSERT_TRUE(svg);
    constexpr int side = 12000;
    ASSERT_FALSE(drawn(**svg, side));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(drawn(**svg, side));
    EXPECT_LT(timer.elapsed(), 500);
}

TEST(SvgWorker, drawings_that_count_on_their_own_may_take_more_than_the_limit_together) {
    const Result<std::shared_ptr<const SvgDocument>> svg =
        SvgDocument::fromBytes(blurredDocument(), limited(1, true));
    ASSERT_TRUE(svg);
    int count = 0;
    {
        const SvgRequest request(60);
        for (; request.processorTime < 1.5; ++count)
            ASSERT_TRUE(drawn(**svg, 400));
    }
    for (int i = 0; i < count; ++i) {
        const Result<QImage> raster = drawn(**svg, 400);
        ASSERT_TRUE(raster) << i << " of " << count << ": " << raster.error().sentence.toStdString();
    }
}

TEST(SvgWorker, drawings_of_one_request_count_together) {
    const Result<std::shared_ptr<const SvgDocument>> svg =
        SvgDocument::fromBytes(blurredDocument(), limited(1, true));
    ASSERT_TRUE(svg);
    const auto drawsForLong = [&] {
        const SvgRequest request(0.5);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 5000 * slowness) {
            if (const Result<QImage> raster = drawn(**svg, 400); !raster)
                return raster.error().code != ErrorCode::TakesTooLong;
        }
        return true;
    };
    EXPECT_FALSE(drawsForLong());
    // The next request begins anew.
    const SvgRequest request(1);
    EXPECT_TRUE(drawn(**svg, 400));
}

TEST(SvgWorker, a_drawing_that_needs_more_address_space_gets_it_after_a_request_too) {
    const Result<std::shared_ptr<const SvgDocument>> svg =
        SvgDocument::fromBytes(document, limited(10, true));
    ASSERT_TRUE(svg);
    {
        const SvgRequest request(10);
        EXPECT_TRUE(drawn(**svg, 32));
    }
    EXPECT_TRUE(drawn(**svg, 6800));
    EXPECT_TRUE(drawn(**svg, 32));
}

TEST(SvgWorker, what_is_drawn_ahead_is_what_is_drawn_on_request) {
    std::vector<QSizeF> sizes;
    for (const int side : {16, 300, 20, 20, 1024, 7, 33, 512})
        sizes.emplace_back(side, side);
    const Result<std::shared_ptr<const SvgDocument>> ahead =
        SvgDocument::fromBytes(blurredDocument(), {sizes, {}});
    const Result<std::shared_ptr<const SvgDocument>> alone = SvgDocument::fromBytes(blurredDocument());
    ASSERT_TRUE(ahead && alone);
    // In another order, and more often, than was told.
    for (const int side : {16, 20, 300, 20, 1024, 5, 7, 20, 33, 512, 512}) {
        const Result<QImage> one = drawn(**ahead, side);
        const Result<QImage> other = drawn(**alone, side);
        ASSERT_TRUE(one && other) << side;
        EXPECT_TRUE(Pictures::same(*one, *other)) << side;
    }
}

TEST(SvgWorker, letters_too_large_for_the_library_of_fonts_do_not_spoil_later_drawings) {
    const QByteArray letters = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                               "<text y='9' font-size='16'>a</text></svg>";
    const Result<std::shared_ptr<const SvgDocument>> alone = SvgDocument::fromBytes(letters);
    const Result<std::shared_ptr<const SvgDocument>> ahead = SvgDocument::fromBytes(
        letters,
        {{{QSizeF(1000, 1000), QSizeF(16, 16), QSizeF(1024, 1024), QSizeF(32, 32), QSizeF(1024, 1024)}}, {}});
    ASSERT_TRUE(alone && ahead);
    for (const int side : {1000, 16, 1024, 32, 1024, 16}) {
        for (const SvgDocument* svg : {alone->get(), ahead->get()}) {
            const Result<QImage> raster = drawn(*svg, side);
            EXPECT_TRUE(raster) << side << ": " << raster.error().sentence.toStdString();
        }
    }
}

TEST(SvgWorker, a_limit_of_the_library_is_told_as_one) {
    QByteArray defs = "<g id='a0'><rect width='1' height='1'/></g>";
    for (int i = 1; i < 9; ++i)
        defs += "<g id='a" + QByteArray::number(i) + "'>" +
                QByteArray("<use href='#a" + QByteArray::number(i - 1) + "'/>").repeated(10) + "</g>";
    const Error error = errorOf("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><defs>" + defs +
                                    "</defs><use href='#a8'/></svg>",
                                limited(60));
    EXPECT_TRUE(error.sentence.startsWith(QLatin1String("the SVG document goes beyond a limit of librsvg: ")))
        << error.sentence.toStdString();
}
