#pragma once

/// How many times as long as elsewhere a program may take: sanitizers make it slow.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr int slowness = 10;
#else
inline constexpr int slowness = 1;
#endif
