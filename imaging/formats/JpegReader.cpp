#include "imaging/formats/JpegReader.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/image/PictureBuilder.h"
#include "imaging/pixels/Raster.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>
// after <cstdio>
#include <jpeglib.h>
// after jpeglib.h
#include <jerror.h>

namespace {

/// libjpeg reports errors by longjmp to `decode`, which calls no destructors. So no function in between holds
/// an object with a destructor while it calls libjpeg. What is needed after an error is a member.
class JpegDecoder {
  public:
    JpegDecoder(const QByteArray& bytes, const ReducedCopies::Renders& renders)
        : m_bytes(bytes), m_picture(renders) {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_jpeg.client_data = this;
        m_errors.error_exit = onError;
        m_errors.emit_message = onMessage;
        m_errors.output_message = [](j_common_ptr) {};
        m_progress.progress_monitor = onProgress;
    }
    ~JpegDecoder() { jpeg_destroy_decompress(&m_jpeg); }
    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    Result<DecodedPicture> decode() {
        if (setjmp(m_jump) != 0) // NOLINT(cert-err52-cpp): libjpeg's only way to report errors
            return failure();
        readHeader();
        if (const Result<Done> allowed = PictureReader::checkSize(m_jpeg.image_width, m_jpeg.image_height);
            !allowed)
            return allowed.error();
        if (const Result<Done> read = readPixels(); !read)
            return read.error();
        return m_picture.finish();
    }

  private:
    static JpegDecoder* self(j_common_ptr jpeg) { return static_cast<JpegDecoder*>(jpeg->client_data); }

    Error failure() const {
        const qint64 width = m_jpeg.image_width;
        const qint64 height = m_jpeg.image_height;
        if (m_hasTooManyScans)
            return {ErrorCode::TakesTooLong,
                    PictureReader::damaged(QStringLiteral("JPEG"), QStringLiteral("it has too many scans"))
                        .sentence};
        switch (m_errors.msg_code) {
        case JERR_IMAGE_TOO_BIG: // the library's own limit of 65500 comes before ours
            return PictureReader::tooLarge(width, height);
        case JERR_OUT_OF_MEMORY:
        case JERR_NO_BACKING_STORE: // more than JPEGMEM in the environment allows
            return width > 0 && height > 0 ? noMemoryForPixels(width, height) : outOfMemory();
        default:
            return PictureReader::damaged(QStringLiteral("JPEG"), QString::fromLatin1(m_message.data()));
        }
    }

    [[noreturn]] static void onError(j_common_ptr jpeg) {
        std::array<char, JMSG_LENGTH_MAX> text{};
        jpeg->err->format_message(jpeg, text.data());
        self(jpeg)->m_message = text;
        longjmp(self(jpeg)->m_jump, 1); // NOLINT(cert-err52-cpp)
    }

    /// The library fills a picture that breaks off with grey and calls that a warning; here it is an error.
    static void onMessage(j_common_ptr jpeg, int level) {
        if (level >= 0)
            return;
        switch (jpeg->err->msg_code) {
        case JWRN_ADOBE_XFORM:
        case JWRN_JFIF_MAJOR:
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_TOO_MUCH_DATA:
            return;
        case JWRN_BOGUS_ICC:
            self(jpeg)->m_hasOddProfile = true;
            return;
        default:
            onError(jpeg);
        }
    }

    /// Limits the scans of a progressive picture: each takes time, and a small file may have any number of
    /// them.
    static void onProgress(j_common_ptr jpeg) {
        LongWork::step();
        constexpr qint64 maximumScans = 500;
        // More than any picture has that is not made to take long.
        constexpr qint64 usualScans = 32;
        // Of all scans together.
        constexpr qint64 maximumBlocks = qint64{60} * 1000 * 1000;
        const qint64 scan = self(jpeg)->m_jpeg.input_scan_number;
        if (scan > maximumScans || (scan > usualScans && scan * self(jpeg)->m_blocks > maximumBlocks)) {
            self(jpeg)->m_hasTooManyScans = true;
            longjmp(self(jpeg)->m_jump, 1); // NOLINT(cert-err52-cpp)
        }
    }

    void readHeader() {
        jpeg_create_decompress(&m_jpeg);
        m_jpeg.progress = &m_progress;
        jpeg_mem_src(&m_jpeg, reinterpret_cast<const unsigned char*>(m_bytes.constData()),
                     static_cast<unsigned long>(m_bytes.size()));
        jpeg_save_markers(&m_jpeg, JPEG_APP0 + 1, 0xffff);
        jpeg_save_markers(&m_jpeg, JPEG_APP0 + 2, 0xffff);
        jpeg_read_header(&m_jpeg, TRUE);
    }

    Result<Done> readPixels() {
        if (Result<Done> read = readMarkers(); !read)
            return read;
        SampleLayout layout;
        switch (m_jpeg.jpeg_color_space) {
        case JCS_GRAYSCALE:
            m_jpeg.out_color_space = m_picture.profile() ? JCS_GRAYSCALE : JCS_EXT_RGBA;
            layout = m_picture.profile()
                         ? SampleLayout{SampleLayout::Colors::Grey, SampleLayout::Alpha::None, 8, false}
                         : SampleLayout{SampleLayout::Colors::RGB, SampleLayout::Alpha::Full, 8, false};
            break;
        case JCS_CMYK:
        case JCS_YCCK:
            m_jpeg.out_color_space = JCS_CMYK;
            // The program that writes an Adobe marker stores ink inverted.
            layout = {SampleLayout::Colors::CMYK, SampleLayout::Alpha::None, 8,
                      m_jpeg.saw_Adobe_marker != FALSE};
            break;
        default:
            m_jpeg.out_color_space = JCS_EXT_RGBA;
            layout = {SampleLayout::Colors::RGB, SampleLayout::Alpha::Full, 8, false};
            break;
        }
        if (Result<Done> allowed = checkScans(); !allowed)
            return allowed;
        if (Result<Done> begun = m_picture.begin(m_jpeg.image_width, m_jpeg.image_height, layout); !begun)
            return begun;
        jpeg_start_decompress(&m_jpeg);
        const bool isInPlace = m_picture.isInPlace();
        m_row.resize(isInPlace ? 0 : m_jpeg.output_width * static_cast<std::size_t>(layout.bytesPerPixel()));
        while (m_jpeg.output_scanline < m_jpeg.output_height) {
            JSAMPROW row = isInPlace ? m_picture.nextRow() : m_row.data();
            jpeg_read_scanlines(&m_jpeg, &row, 1);
            m_picture.addRow(row);
        }
        jpeg_finish_decompress(&m_jpeg);
        return Done{};
    }

    /// A picture in several scans is kept as coefficients until the last one has come.
    Result<Done> checkScans() {
        m_blocks = 0;
        for (int i = 0; i < m_jpeg.num_components; ++i)
            m_blocks += qint64{m_jpeg.comp_info[i].width_in_blocks} * m_jpeg.comp_info[i].height_in_blocks;
        if (jpeg_has_multiple_scans(&m_jpeg) == FALSE)
            return Done{};
        constexpr qint64 blockBytes = DCTSIZE2 * sizeof(JCOEF);
        return PictureReader::checkWorkingMemory(m_blocks * blockBytes, m_jpeg.image_width,
                                                 m_jpeg.image_height,
                                                 QStringLiteral("a JPEG picture in several scans"));
    }

    Result<Done> readMarkers() {
        QByteArrayView exif;
        QByteArrayView xmp;
        for (jpeg_saved_marker_ptr marker = m_jpeg.marker_list; marker != nullptr; marker = marker->next) {
            constexpr QByteArrayView xmpStart("http://ns.adobe.com/xap/1.0/\0", 29);
            const QByteArrayView data(reinterpret_cast<const char*>(marker->data), marker->data_length);
            if (marker->marker == JPEG_APP0 + 1 && data.startsWith("Exif"))
                exif = data;
            else if (marker->marker == JPEG_APP0 + 1 && data.startsWith(xmpStart))
                xmp = data.sliced(xmpStart.size());
        }
        m_picture.setOrientation(
            PictureReader::orientation(QByteArray::fromRawData(exif.data(), exif.size()), xmp));
        JOCTET* icc = nullptr;
        unsigned int length = 0;
        if (jpeg_read_icc_profile(&m_jpeg, &icc, &length) != FALSE)
            return readProfile(icc, length);
        if (m_hasOddProfile)
            m_picture.setProfile({{}, true});
        return Done{};
    }

    Result<Done> readProfile(JOCTET* icc, unsigned int length) {
        const std::unique_ptr<JOCTET, decltype(&std::free)> owned(icc, std::free); // libjpeg's contract
        const Result<EmbeddedProfile> embedded =
            ColorProfile::embedded(QByteArray(reinterpret_cast<const char*>(icc), length));
        if (!embedded)
            return embedded.error();
        m_picture.setProfile(*embedded);
        return Done{};
    }

    const QByteArray& m_bytes;
    jpeg_decompress_struct m_jpeg{};
    jpeg_error_mgr m_errors{};
    jpeg_progress_mgr m_progress{};
    std::jmp_buf m_jump{};
    std::array<char, JMSG_LENGTH_MAX> m_message{};
    bool m_hasOddProfile = false;
    bool m_hasTooManyScans = false;
    qint64 m_blocks = 0; ///< of coefficients, in all components
    PictureBuilder m_picture;
    std::vector<uchar> m_row;
};

} // namespace

Result<DecodedPicture> readJpeg(const QByteArray& bytes, const ReducedCopies::Renders& renders) {
    return unlessMemoryIsShort([&] { return JpegDecoder(bytes, renders).decode(); });
}
