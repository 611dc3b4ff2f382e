// Timing helpers for the benchmarks: figures are printed as ratios against a baseline measured
// in the same run, never judged.
#pragma once
#include <windows.h>
#include <stdio.h>
#include <functional>

namespace bench {

// Seconds per call of `work`, as the best of `rounds` rounds of `repeat` calls each.
inline double SecondsPerCall(const std::function<void()>& work, int repeat, int rounds = 5) {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    double best = 1e30;
    for (int round = 0; round < rounds; ++round) {
        LARGE_INTEGER start, end;
        QueryPerformanceCounter(&start);
        for (int i = 0; i < repeat; ++i) work();
        QueryPerformanceCounter(&end);
        double seconds = double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart) / repeat;
        if (seconds < best) best = seconds;
    }
    return best;
}

// One line: label, time per call in microseconds, and the ratio to the baseline time.
inline void Report(const char* label, double seconds, double baselineSeconds) {
    printf("%-48s %12.2f us  %8.2fx baseline\n", label, seconds * 1e6,
           baselineSeconds > 0 ? seconds / baselineSeconds : 0.0);
    fflush(stdout);
}

}  // namespace bench
