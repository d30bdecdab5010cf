// Takes any bytes for the answers of an SVG worker: a document is drawn, or refused with a sentence.

#include "imaging/svg/SvgDocument.h"
#include "imaging/svg/SvgWorker.h"
#include "tests/fuzz/Require.h"

#include <QTemporaryDir>

#include <cstdint>
#include <fstream>

namespace {

// The folder is in the build folder, since the fuzzer ends without calling destructors. The fuzzer runs in
// the project's root.
const std::string& answers() {
    static const QTemporaryDir folder(QStringLiteral("build/fuzz/answers-XXXXXX"));
    require(folder.isValid());
    static const std::string path = folder.filePath(QStringLiteral("answers")).toStdString();
    return path;
}

void requireSentence(const Error& error) {
    require(!error.sentence.isEmpty() && error.code != ErrorCode::TakesTooLong);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ofstream(answers(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    qputenv("FAKE_WORKER", "says " + QByteArray::fromStdString(answers()));
    SvgWorker::useProgram(QStringLiteral(FAKE_WORKER));
    // Its limit is far from what it takes.
    constexpr double seconds = 20;
    constexpr int side = 20;
    SvgDrawings::Options options{{}, {seconds, false}};
    if (size % 2 == 0)
        options.renders = {{QSizeF(1, 1), QSizeF(side, side)}};
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes("<svg/>", options);
    if (!document) {
        requireSentence(document.error());
        return 0;
    }
    require((*document)->size().width() > 0 && (*document)->size().height() > 0);
    const Result<QImage> icon = (*document)->rendered({0, 0, side, side}, {0, 0, side, side});
    if (!icon)
        requireSentence(icon.error());
    else
        require(icon->size() == QSize(side, side));
    return 0;
}
