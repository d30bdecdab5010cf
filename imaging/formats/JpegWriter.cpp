#include "imaging/formats/JpegWriter.h"

#include "imaging/image/EncodedPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <vector>
// after <cstdio>
#include <jpeglib.h>
// after jpeglib.h
#include <jerror.h>

namespace {

/// libjpeg reports errors by longjmp to `encode`, which calls no destructors. So no function in between holds
/// an object with a destructor while it calls libjpeg. What is needed after an error is a member.
class JpegEncoder {
  public:
    explicit JpegEncoder(const QImage& raster)
        : m_raster(raster), m_row(3 * static_cast<std::size_t>(raster.width())) {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_jpeg.client_data = this;
        m_errors.error_exit = onError;
        m_errors.output_message = [](j_common_ptr) {};
        m_destination.init_destination = onStart;
        m_destination.empty_output_buffer = onFull;
        m_destination.term_destination = onEnd;
    }
    ~JpegEncoder() { jpeg_destroy_compress(&m_jpeg); }
    JpegEncoder(const JpegEncoder&) = delete;
    JpegEncoder& operator=(const JpegEncoder&) = delete;

    Result<QByteArray> encode(int percent) {
        if (setjmp(m_jump) != 0) // NOLINT(cert-err52-cpp): libjpeg's only way to report errors
            return failure();
        write(percent);
        return m_file;
    }

  private:
    [[noreturn]] static void onError(j_common_ptr jpeg) {
        longjmp(static_cast<JpegEncoder*>(jpeg->client_data)->m_jump, 1); // NOLINT(cert-err52-cpp)
    }

    Error failure() {
        // The other one of the library's codes: more than JPEGMEM in the environment allows.
        if (m_isMemoryShort || m_errors.msg_code == JERR_OUT_OF_MEMORY ||
            m_errors.msg_code == JERR_NO_BACKING_STORE)
            return outOfMemory();
        if (m_errors.msg_code == JERR_IMAGE_TOO_BIG)
            return sideTooLong(int{JPEG_MAX_DIMENSION});
        std::array<char, JMSG_LENGTH_MAX> text{};
        m_errors.format_message(reinterpret_cast<j_common_ptr>(&m_jpeg), text.data());
        return {ErrorCode::Unsupported,
                QStringLiteral("the JPEG file can't be made (%1)").arg(QString::fromLatin1(text.data()))};
    }

    static JpegEncoder& self(j_compress_ptr jpeg) { return *static_cast<JpegEncoder*>(jpeg->client_data); }

    static void onStart(j_compress_ptr jpeg) {
        JpegEncoder& encoder = self(jpeg);
        encoder.m_destination.next_output_byte = encoder.m_buffer.data();
        encoder.m_destination.free_in_buffer = encoder.m_buffer.size();
    }

    static boolean onFull(j_compress_ptr jpeg) {
        JpegEncoder& encoder = self(jpeg);
        encoder.append(encoder.m_buffer.size());
        onStart(jpeg);
        return TRUE;
    }

    static void onEnd(j_compress_ptr jpeg) {
        JpegEncoder& encoder = self(jpeg);
        encoder.append(encoder.m_buffer.size() - encoder.m_destination.free_in_buffer);
    }

    /// No exception may pass through libjpeg.
    void append(std::size_t count) {
        m_isMemoryShort = !unlessMemoryIsShort([&] {
            m_file.append(reinterpret_cast<const char*>(m_buffer.data()), static_cast<qsizetype>(count));
        });
        if (m_isMemoryShort)
            onError(reinterpret_cast<j_common_ptr>(&m_jpeg));
    }

    void write(int percent) {
        jpeg_create_compress(&m_jpeg);
        m_jpeg.dest = &m_destination;
        m_jpeg.image_width = static_cast<JDIMENSION>(m_raster.width());
        m_jpeg.image_height = static_cast<JDIMENSION>(m_raster.height());
        m_jpeg.input_components = 3;
        m_jpeg.in_color_space = JCS_RGB;
        jpeg_set_defaults(&m_jpeg);
        jpeg_set_quality(&m_jpeg, percent, TRUE);
        m_jpeg.optimize_coding = TRUE;
        jpeg_start_compress(&m_jpeg, TRUE);
        JSAMPROW row = m_row.data();
        for (int y = 0; y < m_raster.height(); ++y) {
            const uchar* in = m_raster.constScanLine(y);
            for (std::size_t i = 0; i < m_row.size(); i += 3, in += 4) {
                for (std::size_t channel = 0; channel < 3; ++channel)
                    m_row[i + channel] = static_cast<std::uint8_t>(in[channel] + 255 - in[3]);
            }
            jpeg_write_scanlines(&m_jpeg, &row, 1);
        }
        jpeg_finish_compress(&m_jpeg);
    }

    const QImage& m_raster;
    std::vector<std::uint8_t> m_row;
    jpeg_compress_struct m_jpeg{};
    jpeg_error_mgr m_errors{};
    std::jmp_buf m_jump{};
    jpeg_destination_mgr m_destination{};
    std::vector<JOCTET> m_buffer = std::vector<JOCTET>(65536);
    QByteArray m_file;
    bool m_isMemoryShort = false;
};

} // namespace

Result<QByteArray> encodeJpeg(const QImage& raster, double quality) {
    constexpr double percent = 100;
    const auto whole = static_cast<int>(std::lround(percent * std::clamp(quality, 0.0, 1.0)));
    return encodedPicture(raster, [&] { return JpegEncoder(raster).encode(whole); });
}
