#pragma once

#include <QByteArray>

#include <array>
#include <memory>

/// A colour profile that pictures are converted from. Empty where none is embedded or the embedded one is
/// broken.
class ColorProfile {
  public:
    /// No profile: the picture is taken as sRGB.
    ColorProfile() = default;

    /// From the bytes of an ICC profile (ISO 15076-1); empty where they are none.
    static ColorProfile fromIcc(const QByteArray& icc);

    /// CIE xy of white, red, green and blue.
    using Chromaticities = std::array<std::array<double, 2>, 4>;
    static const Chromaticities srgbChromaticities;

    /// An RGB profile of those primaries, or a grey one, whose samples are intensity to the power of
    /// `encodingGamma` (0.45455 is taken as the sRGB curve, which it stands for by convention). Empty where
    /// that is sRGB itself.
    static ColorProfile fromGamma(double encodingGamma, const Chromaticities& chromaticities, bool grey);

    /// The colours that the profile describes.
    enum class Space { Grey, RGB, CMYK, Other };
    Space space() const { return m_space; }

    explicit operator bool() const { return m_handle != nullptr; }
    void* handle() const { return m_handle.get(); }

  private:
    ColorProfile(void* handle, Space space);

    std::shared_ptr<void> m_handle; ///< a cmsHPROFILE
    Space m_space = Space::Other;
};
