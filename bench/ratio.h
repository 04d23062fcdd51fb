#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

/** Returns the duration of one call in seconds. */
template <typename Function>
double seconds_of(Function&& function) {
    const auto start = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/**
 * Runs a benchmark whose result is a ratio. Each iteration runs the baseline, then the subject, so that both
 * see the same load of the machine. Reports the subject's time, the median ratio, and its wanted maximum.
 */
template <typename Subject, typename Baseline>
void measure_ratio(benchmark::State& state, double wanted, Subject&& subject, Baseline&& baseline) {
    std::vector<double> ratios;
    for (auto _ : state) {
        const double baseline_s = seconds_of(baseline);
        const double subject_s = seconds_of(subject);
        state.SetIterationTime(subject_s);
        ratios.push_back(subject_s / baseline_s);
    }
    std::nth_element(ratios.begin(), ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2),
                     ratios.end());
    state.counters["ratio"] = ratios[ratios.size() / 2];
    state.counters["wanted_at_most"] = wanted;
}
