#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <array>
#include <memory>

struct EmbeddedProfile;

/// The colour profile that a picture is converted from. Empty where the picture embeds no profile or a broken
/// one.
class ColorProfile {
  public:
    /// No profile: the picture is taken as sRGB.
    ColorProfile() = default;

    /// From the bytes of the ICC profile (ISO 15076-1) that a picture embeds; `icc` is empty where there is
    /// none. OutOfMemory is the only error.
    static Result<EmbeddedProfile> embedded(const QByteArray& icc);

    /// CIE xy of white, red, green and blue.
    using Chromaticities = std::array<std::array<double, 2>, 4>;
    static const Chromaticities srgbChromaticities;

    /// A grey profile, or an RGB profile of those primaries. Its samples are intensity to the power of
    /// `encodingGamma`; 0.45455 stands for the sRGB curve by convention. Empty where the result is sRGB
    /// itself, where the gamma is not above 0.01 and at most 10, and where the primaries make no profile.
    /// OutOfMemory is the only error.
    static Result<ColorProfile> fromGamma(double encodingGamma, const Chromaticities& chromaticities,
                                          bool grey);

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

/// The profile that a picture embeds.
struct EmbeddedProfile {
    ColorProfile profile;
    bool isBroken = false; ///< the picture embeds a broken profile; `profile` is empty
};
