#pragma once

/// The factor for time limits: sanitizers and emulators make a program slow.
#if defined(RUNS_IN_EMULATOR)
inline constexpr int slowness = 40;
#elif defined(__SANITIZE_ADDRESS__)
inline constexpr int slowness = 10;
#else
inline constexpr int slowness = 1;
#endif
