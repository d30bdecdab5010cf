#include "imaging/deflate/Gzip.h"

#include "base/ShortMemory.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>

namespace {

using Decompressor = std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>;

Result<QByteArray> unpackedBy(const Decompressor& decompressor, const QByteArray& bytes, qsizetype most,
                              const QString& what) {
    // The file tells its length, but only the last member's, and any file may lie.
    constexpr qsizetype usualRatio = 8;
    for (qsizetype room = std::min(most, usualRatio * bytes.size());; room = std::min(most, 4 * room)) {
        QByteArray out(room, Qt::Uninitialized);
        std::size_t length = 0;
        const libdeflate_result result = libdeflate_gzip_decompress(
            decompressor.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), out.data(),
            static_cast<std::size_t>(room), &length);
        if (result == LIBDEFLATE_SUCCESS) {
            out.truncate(static_cast<qsizetype>(length));
            return out;
        }
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE)
            return Error{ErrorCode::Damaged,
                         QStringLiteral("the %1 is truncated or damaged (it can't be unpacked)").arg(what)};
        if (room == most)
            return Error{ErrorCode::TooLarge,
                         QStringLiteral("the %1 is larger than %2 MiB").arg(what).arg(most >> 20)};
    }
}

} // namespace

bool Gzip::isGzip(const QByteArray& bytes) {
    return bytes.startsWith("\x1f\x8b");
}

Result<QByteArray> Gzip::unpacked(const QByteArray& bytes, qsizetype most, const QString& what) {
    const Decompressor decompressor(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!decompressor)
        return outOfMemory();
    return unlessMemoryIsShort([&] { return unpackedBy(decompressor, bytes, most, what); });
}
