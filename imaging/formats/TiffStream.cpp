#include "imaging/formats/TiffStream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

/// The most memory that libtiff may take at once. A damaged directory can't make it take more than the
/// largest picture needs.
constexpr tmsize_t maximumAllocation = tmsize_t{1} << 31;

} // namespace

TiffStream::TiffStream(QByteArray bytes) : m_bytes(std::move(bytes)) {
    open("rm");
}

TiffStream::TiffStream(qsizetype expectedSize) {
    m_bytes.reserve(expectedSize);
    open("w");
}

TiffStream::~TiffStream() {
    if (m_tiff != nullptr)
        TIFFClose(m_tiff);
}

void TiffStream::open(const char* mode) {
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    if (options == nullptr)
        return;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, maximumAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options, onError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options, onWarning, this);
    m_tiff = TIFFClientOpenExt(
        "memory", mode, this, read, write, seek, [](thandle_t) { return 0; }, size, nullptr, nullptr,
        options);
    TIFFOpenOptionsFree(options);
}

QByteArray TiffStream::close() {
    if (m_tiff != nullptr)
        TIFFClose(std::exchange(m_tiff, nullptr));
    return std::move(m_bytes);
}

tmsize_t TiffStream::read(thandle_t handle, void* out, tmsize_t length) {
    TiffStream& stream = self(handle);
    const qsizetype count = std::clamp<qsizetype>(stream.m_bytes.size() - stream.m_position, 0, length);
    std::memcpy(out, stream.m_bytes.constData() + std::min(stream.m_position, stream.m_bytes.size()),
                static_cast<std::size_t>(count));
    stream.m_position += count;
    stream.m_brokeOff = count < length;
    return count;
}

tmsize_t TiffStream::write(thandle_t handle, void* in, tmsize_t length) {
    TiffStream& stream = self(handle);
    const qsizetype end = stream.m_position + length;
    const auto keep = [&] {
        if (stream.m_position == stream.m_bytes.size()) {
            stream.m_bytes.append(static_cast<const char*>(in), length);
        } else {
            if (end > stream.m_bytes.size())
                stream.m_bytes.resize(end);
            std::memcpy(stream.m_bytes.data() + stream.m_position, in, static_cast<std::size_t>(length));
        }
        stream.m_position = end;
    };
    // No exception may pass through libtiff.
    if (unlessMemoryIsShort(keep))
        return length;
    stream.m_isMemoryShort = true;
    return -1;
}

toff_t TiffStream::seek(thandle_t handle, toff_t offset, int whence) {
    TiffStream& stream = self(handle);
    const qsizetype base = whence == SEEK_SET   ? 0
                           : whence == SEEK_CUR ? stream.m_position
                                                : stream.m_bytes.size();
    // Far beyond any file, yet small enough that the addition below can't overflow.
    constexpr qsizetype farthest = qsizetype{1} << 40;
    const auto distance = static_cast<std::int64_t>(offset);
    if (distance < -farthest || distance > farthest || base + distance < 0)
        return static_cast<toff_t>(-1);
    stream.m_position = base + distance;
    return static_cast<toff_t>(stream.m_position);
}

toff_t TiffStream::size(thandle_t handle) {
    return static_cast<toff_t>(self(handle).m_bytes.size());
}

namespace {

/// Whether a message of libtiff or of its JPEG decoder tells of something odd that changes and loses no
/// pixels. They have no numbers. `format` is that of the message, `text` is the message.
bool isHarmless(QByteArrayView format, QByteArrayView text) {
    static constexpr QByteArrayView harmless[] = {
        "Old-style LZW codes",
        "LZWDecode: Strip %u not terminated with EOI code",
        "Too large strip byte count",
        "Too large tile byte count",
        "JPEG strip size exceeds expected dimensions",
        "Auto-corrected former TIFF subsampling values",
        "Subsampling tag is not set, yet subsampling inside JPEG data",
        "Subsampling inside JPEG data",
        "Assuming 8-bit colormap",
    };
    static constexpr const char* harmlessInJpeg[] = {
        "extraneous bytes before marker",
        "Unknown Adobe color transform code",
        "unknown JFIF revision number",
    };
    return std::ranges::any_of(harmless, [&](QByteArrayView start) { return format.startsWith(start); }) ||
           (format == "%s" && std::ranges::any_of(harmlessInJpeg, [&](const char* words) {
                return std::strstr(text.data(), words) != nullptr;
            }));
}

} // namespace

int TiffStream::onWarning(TIFF* tiff, void* handle, const char* module, const char* format,
                          va_list arguments) {
    // Only a warning tells of a directory's data that break off, or that are not read since they are longer
    // than the file.
    const auto& stream = *static_cast<TiffStream*>(handle);
    const bool isLongerThanFile = std::strstr(format, "greater than filesize") != nullptr;
    if (stream.m_brokeOff || stream.m_warningsCount || isLongerThanFile)
        onError(tiff, handle, module, format, arguments);
    return 1;
}

int TiffStream::onError(TIFF* /*tiff*/, void* handle, const char* /*module*/, const char* format,
                        va_list arguments) {
    auto& stream = *static_cast<TiffStream*>(handle);
    if (stream.m_error.isEmpty()) {
        std::array<char, 300> text{};
        std::vsnprintf(text.data(), text.size(), format, arguments);
        if (!stream.m_brokeOff && isHarmless(format, QByteArrayView(text.data())))
            return 1;
        Result<QByteArray> kept = unlessMemoryIsShort([&] { return QByteArray(text.data()); });
        stream.m_isMemoryShort = stream.m_isMemoryShort || !kept;
        stream.m_error = std::move(kept).valueOr(QByteArrayLiteral("not enough memory"));
    }
    return 1;
}
