#pragma once

#include "imaging/image/Image.h"

/// Another picture that small icons are drawn from.
class SmallIconRep final : public ImageRep {
  public:
    /// `picture` is for icons whose longer side has up to `largestSide` pixels.
    SmallIconRep(Image picture, int largestSide) : m_picture(std::move(picture)), m_side(largestSide) {}

    QSize pixelSize() const override { return {}; }
    int reservedSide() const override { return m_side; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override;

  private:
    Image m_picture;
    int m_side;
};
