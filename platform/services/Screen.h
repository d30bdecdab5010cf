#pragma once

/// The display that pictures are drawn for.
class Screen {
  public:
    virtual ~Screen() = default;

    /// Device pixels per point: a whole number of at least 1. The main display's scale, rounded; 1 without a
    /// display.
    virtual int scale() const;
};
