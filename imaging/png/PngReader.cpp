#include "imaging/png/PngReader.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/image/PictureBuilder.h"
#include "imaging/pixels/Raster.h"
#include "imaging/png/InflatedPng.h"
#include "imaging/png/PngExtras.h"

#include <QSysInfo>

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace {

/// libpng reports errors by longjmp to `decode`, which calls no destructors. So no function in between holds
/// an object with a destructor while it calls libpng. What is needed after an error is a member.
class PngDecoder {
  public:
    /// What decompresses the pixel data. Quick: InflatedPng. Telling: libpng with zlib, which reports what is
    /// wrong with damaged data.
    enum class Inflater { Quick, Telling };

    PngDecoder(const QByteArray& bytes, const ReducedCopies::Renders& renders, Inflater inflater)
        : m_bytes(bytes),
          m_inflated(inflater == Inflater::Quick ? std::make_unique<InflatedPng>(bytes) : nullptr),
          m_picture(renders) {
        m_png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, onError, onWarning, this, onAllocate,
                                         onFree);
        if (m_png != nullptr)
            m_info = png_create_info_struct(m_png);
    }
    ~PngDecoder() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    PngDecoder(const PngDecoder&) = delete;
    PngDecoder& operator=(const PngDecoder&) = delete;

    Result<DecodedPicture> decode() {
        if (m_info == nullptr)
            return outOfMemory();
        if (setjmp(png_jmpbuf(m_png)) != 0) // NOLINT(cert-err52-cpp): libpng's only way to report errors
            return failure();
        readHeader();
        if (const Result<Done> allowed = PictureReader::checkSize(m_width, m_height); !allowed)
            return allowed.error();
        if (const Result<Done> read = readPixels(); !read)
            return read.error();
        // libpng goes on without a profile or an orientation that it has no memory for.
        if (m_isMemoryShort)
            return failure();
        Result<DecodedPicture> picture = m_picture.finish();
        if (picture && pngFrames(m_bytes) > 1)
            picture->warnings << PictureReader::framesWarning();
        return picture;
    }

    /// Whether the picture was reduced before its orientation was known, and is not upright.
    bool wasReducedTooEarly() const { return m_picture.wasReducedTooEarly(); }

    /// Whether InflatedPng found the data damaged.
    bool failedToInflate() const { return m_inflated && m_inflated->isDamaged(); }

  private:
    static PngDecoder* self(png_structp png) { return static_cast<PngDecoder*>(png_get_error_ptr(png)); }

    [[noreturn]] static void onError(png_structp png, png_const_charp message) {
        std::strncpy(self(png)->m_message.data(), message, self(png)->m_message.size() - 1);
        png_longjmp(png, 1);
    }

    static void onWarning(png_structp png, png_const_charp message) {
        constexpr png_uint_32 profileChunk = 0x69434350; // 'iCCP'
        constexpr png_uint_32 pixelsChunk = 0x49444154;  // 'IDAT'
        constexpr png_uint_32 endChunk = 0x49454e44;     // 'IEND'
        const png_uint_32 chunk = png_get_io_chunk_type(png);
        // libpng only warns of some damage in the pixel data, and of pixel data after other chunks: both are
        // errors here. As long as InflatedPng has pixels to give, it finds all damage itself: then the
        // warning means only that there are more data than pixels.
        if (chunk == pixelsChunk && (!self(png)->m_inflated || self(png)->m_hasAllPixels))
            onError(png, message);
        // Newer versions of libpng only warn of damage there.
        if (chunk == endChunk && std::string_view(message).ends_with("CRC error"))
            onError(png, message);
        if (chunk == profileChunk)
            self(png)->m_hasOddProfile = true;
    }

    static png_voidp onAllocate(png_structp png, png_alloc_size_t size) {
        void* place = std::malloc(size); // NOLINT(cppcoreguidelines-no-malloc): libpng's contract
        if (place == nullptr)
            static_cast<PngDecoder*>(png_get_mem_ptr(png))->m_isMemoryShort = true;
        return place;
    }

    static void onFree(png_structp /*png*/, png_voidp place) {
        std::free(place); // NOLINT(cppcoreguidelines-no-malloc): libpng's contract
    }

    Error failure() const {
        if (m_isMemoryShort)
            return m_width > 0 && m_height > 0 ? noMemoryForPixels(m_width, m_height) : outOfMemory();
        return PictureReader::damaged(QStringLiteral("PNG"), QString::fromLatin1(m_message.data()));
    }

    static void onRead(png_structp png, png_bytep out, size_t length) {
        if (!static_cast<PngDecoder*>(png_get_io_ptr(png))->read(out, length))
            png_error(png, "it ends too early");
    }

    bool read(png_bytep out, size_t length) {
        if (m_inflated)
            return m_inflated->read(out, length);
        if (length > static_cast<size_t>(m_bytes.size()) - m_position)
            return false;
        std::memcpy(out, m_bytes.constData() + m_position, length);
        m_position += length;
        return true;
    }

    void readHeader() {
        png_set_read_fn(m_png, this, onRead);
        if (m_inflated)
            png_set_crc_action(m_png, PNG_CRC_QUIET_USE, PNG_CRC_DEFAULT);
        // PictureReader::checkSize checks the size, with its own message.
        png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        // These chunks are not needed. Small texts can decompress to very much. For the other types libpng
        // takes memory by the length that the chunk states, before it reads the chunk.
        static constexpr png_byte unused[] = "tEXt\0zTXt\0iTXt\0sPLT\0pCAL\0sCAL";
        png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, unused, 6);
        // A chunk is not longer than its file. A profile may be, when it is decompressed.
        constexpr qsizetype longestProfile = 16 << 20;
        png_set_chunk_malloc_max(m_png,
                                 static_cast<png_alloc_size_t>(std::max(m_bytes.size(), longestProfile)));
        png_read_info(m_png, m_info);
        m_width = png_get_image_width(m_png, m_info);
        m_height = png_get_image_height(m_png, m_info);
    }

    Result<Done> readPixels() {
        const int colorType = png_get_color_type(m_png, m_info);
        const bool isWide = png_get_bit_depth(m_png, m_info) == 16;
        const bool isGrey = (colorType & PNG_COLOR_MASK_COLOR) == 0;
        if (Result<Done> read = readProfile(isGrey); !read)
            return read;
        const bool staysGrey = isGrey && m_picture.profile();
        png_set_expand(m_png);
        if (isGrey && !staysGrey)
            png_set_gray_to_rgb(m_png);
        if (isWide && QSysInfo::ByteOrder == QSysInfo::LittleEndian)
            png_set_swap(m_png);
        png_set_add_alpha(m_png, 0xffff, PNG_FILLER_AFTER);
        const int passes = png_set_interlace_handling(m_png);
        png_read_update_info(m_png, m_info);

        const SampleLayout layout{staysGrey ? SampleLayout::Colors::Grey : SampleLayout::Colors::RGB,
                                  SampleLayout::Alpha::Straight, isWide ? 16 : 8, false};
        readOrientation();
        if (Result<Done> begun = m_picture.begin(m_width, m_height, layout); !begun)
            return begun;
        const std::size_t rowBytes = png_get_rowbytes(m_png, m_info);
        if (passes > 1) {
            if (Result<Done> allowed =
                    PictureReader::checkWorkingMemory(static_cast<qint64>(rowBytes) * m_height, m_width,
                                                      m_height, QStringLiteral("an interlaced PNG picture"));
                !allowed)
                return allowed;
        }
        if (passes == 1)
            readSequential(rowBytes);
        else
            readInterlaced(rowBytes, passes);
        if (m_inflated && !m_inflated->endPixels())
            png_error(m_png, "damaged data");
        m_hasAllPixels = true;
        png_read_end(m_png, m_info);
        readOrientation();
        return Done{};
    }

    void readSequential(std::size_t rowBytes) {
        const bool isInPlace = m_picture.isInPlace();
        m_rows.resize(isInPlace ? 0 : rowBytes);
        for (png_uint_32 y = 0; y < m_height; ++y) {
            uchar* row = isInPlace ? m_picture.nextRow() : m_rows.data();
            png_read_row(m_png, row, nullptr);
            m_picture.addRow(row);
        }
    }

    /// Interlaced rows come in several passes: all samples are kept, not converted, until the last pass.
    void readInterlaced(std::size_t rowBytes, int passes) {
        m_rows.resize(rowBytes * m_height);
        for (int pass = 0; pass < passes; ++pass) {
            for (png_uint_32 y = 0; y < m_height; ++y) {
                LongWork::step();
                png_read_row(m_png, m_rows.data() + rowBytes * y, nullptr);
            }
        }
        for (png_uint_32 y = 0; y < m_height; ++y)
            m_picture.addRow(m_rows.data() + rowBytes * y);
        std::vector<uchar>().swap(m_rows);
    }

    /// In the order of precedence that the format gives: iCCP, sRGB, then gAMA and cHRM.
    Result<Done> readProfile(bool isGrey) {
        png_charp name = nullptr;
        png_bytep icc = nullptr;
        png_uint_32 iccLength = 0;
        int method = 0;
        int intent = 0;
        if (png_get_iCCP(m_png, m_info, &name, &method, &icc, &iccLength) != 0) {
            const Result<EmbeddedProfile> embedded =
                ColorProfile::embedded(QByteArray(reinterpret_cast<const char*>(icc), iccLength));
            if (!embedded)
                return embedded.error();
            m_picture.setProfile(*embedded);
            return Done{};
        }
        if (png_get_sRGB(m_png, m_info, &intent) != 0)
            return Done{};
        if (m_hasOddProfile) {
            m_picture.setProfile({{}, true}); // the file has a profile that libpng refused
            return Done{};
        }
        double gamma = 0.45455;
        ColorProfile::Chromaticities c = ColorProfile::srgbChromaticities;
        const bool hasGamma = png_get_gAMA(m_png, m_info, &gamma) != 0;
        const bool hasChromaticities = png_get_cHRM(m_png, m_info, &c[0][0], &c[0][1], &c[1][0], &c[1][1],
                                                    &c[2][0], &c[2][1], &c[3][0], &c[3][1]) != 0;
        if (!hasGamma && !hasChromaticities)
            return Done{};
        const Result<ColorProfile> profile = ColorProfile::fromGamma(gamma, c, isGrey);
        if (!profile)
            return profile.error();
        m_picture.setProfile({*profile, false});
        return Done{};
    }

    void readOrientation() {
        png_bytep exif = nullptr;
        png_uint_32 length = 0;
        if (png_get_eXIf_1(m_png, m_info, &length, &exif) == 0)
            length = 0;
        m_picture.setOrientation(PictureReader::orientation(
            QByteArray::fromRawData(reinterpret_cast<const char*>(exif), length), pngXmp(m_bytes)));
    }

    const QByteArray& m_bytes;
    std::size_t m_position = 0;
    std::unique_ptr<InflatedPng> m_inflated;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    png_uint_32 m_width = 0;
    png_uint_32 m_height = 0;
    std::array<char, 200> m_message{};
    bool m_isMemoryShort = false;
    bool m_hasAllPixels = false;
    bool m_hasOddProfile = false;
    PictureBuilder m_picture;
    std::vector<uchar> m_rows;
};

Result<DecodedPicture> read(const QByteArray& bytes, const ReducedCopies::Renders& renders) {
    static const ReducedCopies::Renders none;
    const ReducedCopies::Renders* wanted = &renders;
    auto inflater = PngDecoder::Inflater::Quick;
    for (;;) {
        PngDecoder decoder(bytes, *wanted, inflater);
        Result<DecodedPicture> picture = decoder.decode();
        if (decoder.failedToInflate())
            inflater = PngDecoder::Inflater::Telling;
        else if (decoder.wasReducedTooEarly()) // the orientation may stand after the pixels
            wanted = &none;
        else
            return picture;
    }
}

} // namespace

Result<DecodedPicture> readPng(const QByteArray& bytes, const ReducedCopies::Renders& renders) {
    return unlessMemoryIsShort([&] { return read(bytes, renders); });
}
