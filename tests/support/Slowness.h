#pragma once

/// The factor for time limits: sanitizers make a program slow.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr int slowness = 10;
#else
inline constexpr int slowness = 1;
#endif
