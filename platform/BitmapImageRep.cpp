#include "platform/BitmapImageRep.h"

#include "platform/ImageSource.h"
#include "platform/PngWriter.h"

#include <utility>

BitmapImageRep::BitmapImageRep(QImage raster) : m_raster(std::move(raster)) {
    if (m_raster.format() != QImage::Format_RGBA8888_Premultiplied)
        m_raster.convertTo(QImage::Format_RGBA8888_Premultiplied);
}

std::unique_ptr<BitmapImageRep> BitmapImageRep::imageRepWithData(const QByteArray& data) {
    Result<DecodedPicture> decoded = ImageSource::decode(data);
    if (!decoded)
        return nullptr;
    return std::make_unique<BitmapImageRep>(std::move(decoded->raster));
}

QImage BitmapImageRep::rendered(AxisMapping x, AxisMapping y) const {
    x.sourceLength = m_raster.width();
    y.sourceLength = m_raster.height();
    return resampledLanczos3(m_raster, x, y);
}

QByteArray BitmapImageRep::representationUsingType(FileType type) const {
    switch (type) {
    case FileType::PNG:
        return encodePng(m_raster);
    }
    return {};
}
