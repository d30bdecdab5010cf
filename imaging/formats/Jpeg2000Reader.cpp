#include "imaging/formats/Jpeg2000Reader.h"

#include "base/ShortMemory.h"
#include "imaging/formats/Jpeg2000Codestream.h"
#include "imaging/formats/OpenJpeg.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/RowConverter.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

struct Input {
    const QByteArray& bytes;
    qsizetype position = 0;
};

OPJ_SIZE_T readInput(void* out, OPJ_SIZE_T length, void* user) {
    auto* input = static_cast<Input*>(user);
    const qsizetype count =
        std::min<qsizetype>(static_cast<qsizetype>(length), input->bytes.size() - input->position);
    if (count <= 0)
        return static_cast<OPJ_SIZE_T>(-1);
    std::memcpy(out, input->bytes.constData() + input->position, static_cast<std::size_t>(count));
    input->position += count;
    return static_cast<OPJ_SIZE_T>(count);
}

OPJ_OFF_T skipInput(OPJ_OFF_T length, void* user) {
    auto* input = static_cast<Input*>(user);
    if (length < 0 || length > input->bytes.size() - input->position)
        return -1;
    input->position += length;
    return length;
}

OPJ_BOOL seekInput(OPJ_OFF_T position, void* user) {
    auto* input = static_cast<Input*>(user);
    if (position < 0 || position > input->bytes.size())
        return OPJ_FALSE;
    input->position = position;
    return OPJ_TRUE;
}

void keepMessage(const char* text, void* user) {
    auto* message = static_cast<QByteArray*>(user);
    // No exception may pass through the library.
    if (message->isEmpty())
        *message = unlessMemoryIsShort([&] { return QByteArray(text).trimmed(); }).valueOr({});
}

using OpenJpeg::Codec;
using OpenJpeg::Picture;
using OpenJpeg::Stream;

/// A component's sample as a byte.
std::uint8_t byteOf(const opj_image_comp_t& component, std::size_t index) {
    const std::int64_t maximum = (std::int64_t{1} << component.prec) - 1;
    const std::int64_t offset = component.sgnd != 0 ? std::int64_t{1} << (component.prec - 1) : 0;
    const std::int64_t value = std::clamp<std::int64_t>(component.data[index] + offset, 0, maximum);
    return static_cast<std::uint8_t>((value * 255 + maximum / 2) / maximum);
}

/// Unsupported for a kind of picture that is not read here.
Result<Done> checkKind(const opj_image_t& picture) {
    const opj_image_comp_t& first = picture.comps[0];
    for (OPJ_UINT32 i = 0; i < picture.numcomps; ++i) {
        const opj_image_comp_t& component = picture.comps[i];
        if (component.data == nullptr || component.prec == 0 || component.prec > 31 ||
            component.w != first.w || component.h != first.h)
            return Error{ErrorCode::Unsupported,
                         QStringLiteral("JPEG 2000 pictures whose channels differ in size are not read")};
    }
    if (picture.color_space == OPJ_CLRSPC_SYCC || picture.color_space == OPJ_CLRSPC_EYCC ||
        picture.color_space == OPJ_CLRSPC_CMYK)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("JPEG 2000 pictures are read only in grey and RGB")};
    return Done{};
}

/// The samples of a decoded picture as a raster, RGBA8888. Colours are converted on their own, so that they
/// stay as they are where pixels are translucent.
Result<DecodedPicture> converted(const opj_image_t& picture) {
    const opj_image_comp_t& first = picture.comps[0];
    const bool isGrey = picture.numcomps <= 2;
    const bool hasAlpha = picture.numcomps % 2 == 0;
    const SampleLayout layout{isGrey ? SampleLayout::Colors::Grey : SampleLayout::Colors::RGB,
                              SampleLayout::Alpha::None, 8, false};
    const OPJ_UINT32 colors = picture.numcomps - (hasAlpha ? 1 : 0);
    const Result<EmbeddedProfile> embedded = ColorProfile::embedded(
        QByteArray(reinterpret_cast<const char*>(picture.icc_profile_buf), picture.icc_profile_len));
    if (!embedded)
        return embedded.error();
    Result<QImage> raster = PictureReader::newPicture(first.w, first.h);
    if (!raster)
        return raster.error();
    Result<RowConverter> converter =
        RowConverter::create(layout, embedded->profile, static_cast<int>(first.w));
    if (!converter)
        return converter.error();
    raster->reinterpretAsFormat(QImage::Format_RGBA8888);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(first.w) * colors);
    for (OPJ_UINT32 y = 0; y < first.h; ++y) {
        const std::size_t start = static_cast<std::size_t>(y) * first.w;
        std::uint8_t* sample = row.data();
        for (OPJ_UINT32 x = 0; x < first.w; ++x) {
            for (OPJ_UINT32 i = 0; i < colors; ++i)
                *sample++ = byteOf(picture.comps[i], start + x);
        }
        std::uint8_t* pixel = raster->scanLine(static_cast<int>(y));
        converter->convert(row.data(), pixel, static_cast<int>(first.w));
        for (OPJ_UINT32 x = 0; hasAlpha && x < first.w; ++x, pixel += 4)
            pixel[3] = byteOf(picture.comps[colors], start + x);
    }
    DecodedPicture decoded{std::move(*raster), {}};
    if (converter->profileWasRefused() || embedded->isBroken)
        decoded.warnings << PictureReader::profileWarning();
    return decoded;
}

Result<DecodedPicture> decodedJpeg2000(const QByteArray& bytes) {
    const QString name = QStringLiteral("JPEG 2000");
    const bool isBare = bytes.startsWith(Jpeg2000Codestream::start);
    const Codec codec(opj_create_decompress(isBare ? OPJ_CODEC_J2K : OPJ_CODEC_JP2));
    const Stream stream(opj_stream_default_create(OPJ_TRUE));
    if (!codec || !stream)
        return Error{ErrorCode::OutOfMemory, QStringLiteral("not enough memory for the picture")};
    QByteArray message;
    opj_set_error_handler(codec.get(), keepMessage, &message);
    const RefusedMemory memory;
    const auto failure = [&] {
        return memory.wasSeen() ? outOfMemory() : PictureReader::damaged(name, QString::fromUtf8(message));
    };

    Input input{bytes};
    opj_stream_set_user_data(stream.get(), &input, nullptr);
    opj_stream_set_user_data_length(stream.get(), static_cast<OPJ_UINT64>(bytes.size()));
    opj_stream_set_read_function(stream.get(), readInput);
    opj_stream_set_skip_function(stream.get(), skipInput);
    opj_stream_set_seek_function(stream.get(), seekInput);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t* rawPicture = nullptr;
    if (opj_setup_decoder(codec.get(), &parameters) == OPJ_FALSE ||
        opj_decoder_set_strict_mode(codec.get(), OPJ_TRUE) == OPJ_FALSE ||
        opj_read_header(stream.get(), codec.get(), &rawPicture) == OPJ_FALSE)
        return failure();
    const Picture picture(rawPicture);
    if (picture->numcomps == 0 || picture->x1 < picture->x0 || picture->y1 < picture->y0)
        return failure();
    if (const Result<Done> allowed =
            PictureReader::checkSize(picture->x1 - picture->x0, picture->y1 - picture->y0);
        !allowed)
        return allowed.error();
    // Checked before memory for the components is taken.
    constexpr OPJ_UINT32 mostComponents = 4;
    if (picture->numcomps > mostComponents)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("JPEG 2000 pictures with %1 channels are not read; the most is 4")
                         .arg(picture->numcomps)};
    if (opj_decode(codec.get(), stream.get(), picture.get()) == OPJ_FALSE ||
        opj_end_decompress(codec.get(), stream.get()) == OPJ_FALSE)
        return failure();
    // The library ignores missing tiles.
    const auto codestream = Jpeg2000Codestream::find(bytes);
    if (!codestream || !Jpeg2000Codestream::hasAllTiles(*codestream))
        return PictureReader::damaged(name, QStringLiteral("a tile is missing"));

    if (const Result<Done> known = checkKind(*picture); !known)
        return known.error();
    return converted(*picture);
}

} // namespace

Result<DecodedPicture> readStraightJpeg2000(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return decodedJpeg2000(bytes); });
}

Result<DecodedPicture> readJpeg2000(const QByteArray& bytes) {
    Result<DecodedPicture> picture = readStraightJpeg2000(bytes);
    if (!picture)
        return picture;
    QImage& raster = picture->raster;
    premultiply(raster.constBits(), raster.bits(),
                static_cast<std::size_t>(raster.width()) * static_cast<std::size_t>(raster.height()));
    raster.reinterpretAsFormat(QImage::Format_RGBA8888_Premultiplied);
    return picture;
}
