#pragma once

#include <QByteArray>

#include <openjpeg.h>

#include <memory>

/// Owners of OpenJPEG's objects.
namespace OpenJpeg {

template <auto destroy>
struct Destroy {
    template <typename T>
    void operator()(T* object) const {
        destroy(object);
    }
};

using Codec = std::unique_ptr<opj_codec_t, Destroy<opj_destroy_codec>>;
using Stream = std::unique_ptr<opj_stream_t, Destroy<opj_stream_destroy>>;
using Picture = std::unique_ptr<opj_image_t, Destroy<opj_image_destroy>>;

} // namespace OpenJpeg
