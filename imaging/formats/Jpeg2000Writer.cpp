#include "imaging/formats/Jpeg2000Writer.h"

#include "imaging/formats/OpenJpeg.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/pixels/Premultiplication.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

using OpenJpeg::Codec;
using OpenJpeg::Picture;
using OpenJpeg::Stream;

/// A file that is written in any order.
struct Output {
    QByteArray bytes;
    qsizetype position = 0;

    bool isMemoryShort = false;

    /// Moves the position to `end`, and fills the file with zeros up to there. False where memory is short:
    /// no exception may pass through the library.
    bool goTo(qsizetype end) {
        const Result<Done> gone = unlessMemoryIsShort([&] {
            if (end > bytes.size())
                bytes.append(end - bytes.size(), '\0');
            position = end;
        });
        isMemoryShort = isMemoryShort || !gone;
        return gone.operator bool();
    }
};

OPJ_SIZE_T writeOutput(void* in, OPJ_SIZE_T length, void* user) {
    auto* output = static_cast<Output*>(user);
    const qsizetype start = output->position;
    if (!output->goTo(start + static_cast<qsizetype>(length)))
        return static_cast<OPJ_SIZE_T>(-1);
    std::memcpy(output->bytes.data() + start, in, length);
    return length;
}

OPJ_OFF_T skipOutput(OPJ_OFF_T length, void* user) {
    auto* output = static_cast<Output*>(user);
    return output->goTo(output->position + length) ? length : -1;
}

OPJ_BOOL seekOutput(OPJ_OFF_T position, void* user) {
    return static_cast<Output*>(user)->goTo(position) ? OPJ_TRUE : OPJ_FALSE;
}

constexpr std::size_t components = 4;

Picture pictureOf(const QImage& straight) {
    std::array<opj_image_cmptparm_t, components> parameters{};
    for (opj_image_cmptparm_t& component : parameters) {
        component.dx = component.dy = 1;
        component.w = static_cast<OPJ_UINT32>(straight.width());
        component.h = static_cast<OPJ_UINT32>(straight.height());
        component.prec = 8;
    }
    Picture picture(opj_image_create(components, parameters.data(), OPJ_CLRSPC_SRGB));
    if (!picture)
        return picture;
    picture->x1 = static_cast<OPJ_UINT32>(straight.width());
    picture->y1 = static_cast<OPJ_UINT32>(straight.height());
    picture->comps[components - 1].alpha = 1;
    std::size_t at = 0;
    for (int y = 0; y < straight.height(); ++y) {
        const uchar* in = straight.constScanLine(y);
        for (int x = 0; x < straight.width(); ++x, ++at) {
            for (std::size_t i = 0; i < components; ++i)
                picture->comps[i].data[at] = *in++;
        }
    }
    return picture;
}

Result<QByteArray> jpeg2000File(const QImage& raster) {
    const Result<QImage> straight = straightRaster(raster);
    if (!straight)
        return straight.error();
    const Picture picture = pictureOf(*straight);
    const Codec codec(opj_create_compress(OPJ_CODEC_JP2));
    const Stream stream(opj_stream_default_create(OPJ_FALSE));
    if (!picture || !codec || !stream)
        return outOfMemory();
    Output output;
    opj_stream_set_user_data(stream.get(), &output, nullptr);
    opj_stream_set_write_function(stream.get(), writeOutput);
    opj_stream_set_skip_function(stream.get(), skipOutput);
    opj_stream_set_seek_function(stream.get(), seekOutput);
    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.tcp_numlayers = 1;
    parameters.tcp_rates[0] = 0;
    parameters.cp_disto_alloc = 1;
    parameters.tcp_mct = 1;
    // Each resolution halves the picture: the shorter side limits how many there are.
    const auto shorter = static_cast<unsigned>(std::min(raster.width(), raster.height()));
    parameters.numresolution = std::min(parameters.numresolution, static_cast<int>(std::bit_width(shorter)));
    const RefusedMemory memory;
    const bool isWritten = opj_setup_encoder(codec.get(), &parameters, picture.get()) != OPJ_FALSE &&
                           opj_start_compress(codec.get(), picture.get(), stream.get()) != OPJ_FALSE &&
                           opj_encode(codec.get(), stream.get()) != OPJ_FALSE &&
                           opj_end_compress(codec.get(), stream.get()) != OPJ_FALSE;
    if (output.isMemoryShort || (!isWritten && memory.wasSeen()))
        return outOfMemory();
    if (!isWritten)
        return Error{ErrorCode::Unsupported, QStringLiteral("the JPEG 2000 file can't be made")};
    return output.bytes;
}

} // namespace

Result<QByteArray> encodeJpeg2000(const QImage& raster) {
    return encodedPicture(raster, [&] { return jpeg2000File(raster); });
}
