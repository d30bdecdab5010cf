#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

/// Runs `work` 51 times, prints the median and the slowest time, and returns the median in milliseconds.
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
