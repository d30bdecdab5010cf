#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

/// The median time of 51 runs in milliseconds, which is printed with the slowest.
inline double report(const char* name, const std::function<void()>& work) {
    constexpr int runs = 51;
    constexpr double nanoseconds = 1e6;
    std::vector<double> milliseconds;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        milliseconds.push_back(static_cast<double>(timer.nsecsElapsed()) / nanoseconds);
    }
    std::ranges::sort(milliseconds);
    std::printf("%-52s median %7.3f ms, slowest %7.3f ms\n", name, milliseconds[runs / 2],
                milliseconds.back());
    return milliseconds[runs / 2];
}
