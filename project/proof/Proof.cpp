#include "project/proof/Proof.h"

#include "files/AtomicFile.h"
#include "imaging/png/PngWriter.h"
#include "project/proof/ProofDrawing.h"
#include "project/proof/ProofPage.h"

namespace {

bool endsWith(const QString& path, const char* ending) {
    return path.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
}

Result<QByteArray> png(const ProofSheet& sheet) {
    const Result<QImage> raster = drawnProof(sheet);
    return raster ? encodePng(*raster, {.channels = PngChannels::Rgb}) : Result<QByteArray>(raster.error());
}

} // namespace

bool isProofName(const QString& path) {
    return endsWith(path, ".png") || endsWith(path, ".html");
}

Result<Done> writeProof(const ProofSheet& sheet, const QString& path) {
    if (sheet.isEmpty())
        return Error{ErrorCode::EmptySize, QStringLiteral("there is no icon to show")};
    const Result<QByteArray> bytes = endsWith(path, ".png") ? png(sheet) : proofPage(sheet);
    return bytes ? AtomicFile::write(path, *bytes) : Result<Done>(bytes.error());
}
