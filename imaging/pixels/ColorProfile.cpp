#include "imaging/pixels/ColorProfile.h"

#include "base/ShortMemory.h"

#include <lcms2.h>

#include <cmath>

namespace {

bool isNear(const ColorProfile::Chromaticities& a, const ColorProfile::Chromaticities& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::abs(a[i][0] - b[i][0]) > 0.002 || std::abs(a[i][1] - b[i][1]) > 0.002)
            return false;
    }
    return true;
}

cmsToneCurve* srgbCurve() {
    // IEC 61966-2-1
    const std::array<double, 5> parameters{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    return cmsBuildParametricToneCurve(nullptr, 4, parameters.data());
}

/// Read from the header's own bytes: the library returns it as an enumeration, and a file may hold a value
/// that the enumeration lacks.
ColorProfile::Space spaceOf(const QByteArray& icc) {
    const QByteArray signature = icc.mid(16, 4);
    if (signature == "GRAY")
        return ColorProfile::Space::Grey;
    if (signature == "RGB ")
        return ColorProfile::Space::RGB;
    return signature == "CMYK" ? ColorProfile::Space::CMYK : ColorProfile::Space::Other;
}

} // namespace

const ColorProfile::Chromaticities ColorProfile::srgbChromaticities{
    {{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}};

ColorProfile::ColorProfile(void* handle, Space space) : m_space(space) {
    if (handle != nullptr)
        m_handle = std::shared_ptr<void>(handle, [](void* profile) { cmsCloseProfile(profile); });
}

Result<EmbeddedProfile> ColorProfile::embedded(const QByteArray& icc) {
    if (icc.isEmpty())
        return EmbeddedProfile{};
    return unlessMemoryIsShort([&]() -> Result<EmbeddedProfile> {
        const RefusedMemory memory;
        void* handle = cmsOpenProfileFromMem(icc.constData(), static_cast<cmsUInt32Number>(icc.size()));
        if (handle == nullptr && memory.wasSeen())
            return outOfMemory();
        if (handle == nullptr)
            return EmbeddedProfile{{}, true};
        return EmbeddedProfile{ColorProfile(handle, spaceOf(icc)), false};
    });
}

Result<ColorProfile> ColorProfile::fromGamma(double encodingGamma, const Chromaticities& chromaticities,
                                             bool grey) {
    const bool isSrgbCurve = std::abs(encodingGamma - 0.45455) < 0.005;
    if (!(encodingGamma > 0.01) || encodingGamma > 10 ||
        (isSrgbCurve && (grey || isNear(chromaticities, srgbChromaticities))))
        return ColorProfile();
    const RefusedMemory memory;
    cmsToneCurve* curve = isSrgbCurve ? srgbCurve() : cmsBuildGamma(nullptr, 1 / encodingGamma);
    if (curve == nullptr)
        return outOfMemory();
    const auto& c = chromaticities;
    const cmsCIExyY white{c[0][0], c[0][1], 1};
    void* handle = nullptr;
    if (grey) {
        handle = cmsCreateGrayProfile(cmsD50_xyY(), curve);
    } else {
        const cmsCIExyYTRIPLE primaries{{c[1][0], c[1][1], 1}, {c[2][0], c[2][1], 1}, {c[3][0], c[3][1], 1}};
        const std::array<cmsToneCurve*, 3> curves{curve, curve, curve};
        handle = cmsCreateRGBProfile(&white, &primaries, curves.data());
    }
    cmsFreeToneCurve(curve);
    if (handle == nullptr)
        return memory.wasSeen() ? Result<ColorProfile>(outOfMemory()) : ColorProfile();
    return unlessMemoryIsShort([&] { return ColorProfile(handle, grey ? Space::Grey : Space::RGB); });
}
