#include "imaging/image/SmallIconRep.h"

#include "imaging/pixels/Raster.h"

Result<QImage> SmallIconRep::rendered(AxisMapping x, AxisMapping y) const {
    const ImageRep* best = m_picture.bestRepresentation(QSizeF(x.length, y.length));
    return best != nullptr ? best->rendered(x, y) : noPixels();
}
