#pragma once

/// The display that pictures are drawn for.
class Screen {
  public:
    virtual ~Screen() = default;

    /// Device pixels per point: 1 or 2. The main display's scale, rounded up, and 2 where it is larger; 1
    /// without a display. At another scale no picture would have the size of an icns element.
    virtual int scale() const;
};
