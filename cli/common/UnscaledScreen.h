#pragma once

#include "platform/services/Screen.h"

/// A display with scale 1: a point is always a pixel.
class UnscaledScreen final : public Screen {
  public:
    int scale() const override { return 1; }
};
