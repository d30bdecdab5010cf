#pragma once

#include "platform/services/Screen.h"

/// A display that never scales: points are pixels, wherever the program runs.
class UnscaledScreen final : public Screen {
  public:
    int scale() const override { return 1; }
};
