// Reads any bytes as an SVG document: a worker that draws nothing gets it, or it is refused with a sentence.

#include "imaging/svg/SvgDocument.h"
#include "imaging/svg/SvgWorker.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SvgWorker::useProgram(QStringLiteral(FAKE_WORKER));
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(bytes);
    if (!document) {
        require(!document.error().sentence.isEmpty());
        return 0;
    }
    require((*document)->size().width() > 0 && (*document)->size().height() > 0);
    constexpr int side = 20;
    const Result<QImage> icon = (*document)->rendered({0, 0, side, side}, {0, 0, side, side});
    require(!icon || icon->size() == QSize(side, side));
    return 0;
}
