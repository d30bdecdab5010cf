#pragma once

#include "imaging/image/Image.h"
#include "imaging/pixels/AxisMapping.h"
#include "imaging/pixels/PictureFit.h"

/// The part of a target that a picture touches: its corner, and how the picture lies on its pixels.
struct FittedPart {
    int left;
    int top;
    AxisMapping x;
    AxisMapping y;
};

/// Where `fit` lays a picture of the size `picture` on an icon that lies on its target as `x` and `y` say.
FittedPart fittedPart(const PictureFit& fit, const QSizeF& picture, const AxisMapping& x,
                      const AxisMapping& y);

/// A picture laid on icons of any shape: its bitmaps or its drawing in a part of the icon, transparent around
/// it. It has no size of its own, like a drawing.
class FittedRep final : public ImageRep {
  public:
    FittedRep(Image picture, const PictureFit& fit) : m_picture(std::move(picture)), m_fit(fit) {}

    QSize pixelSize() const override { return {}; }

    /// The picture is drawn in the size that it gets, from the representation for that size. Pixels of a
    /// bitmap that the fit cuts off have no say in those that stay.
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override;

  private:
    Image m_picture;
    PictureFit m_fit;
};

/// `picture` laid on icons as `fit` says, an image of the same size; `picture` itself where the fit is plain.
Image fitted(Image picture, const PictureFit& fit);
