#include "bench/medians.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace bench {

void Medians::start() {
    std::string program = "bench";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::array<char*, 3> arguments{program.data(), interleaving.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments.data());
}

void Medians::add(const std::string& name, const std::function<void()>& run, int repetitions) {
    constexpr double SHORTEST = 0.05;  // seconds
    times_[name].clear();
    benchmark::RegisterBenchmark(name.c_str(),
                                 [run](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state) {
                                         run();
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->MinTime(SHORTEST)
        ->Repetitions(repetitions);
}

void Medians::run() {
    benchmark::RunSpecifiedBenchmarks(this);
    benchmark::ClearRegisteredBenchmarks();
}

double Medians::of(const std::string& name) const {
    std::vector<double> times = times_.at(name);
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

bool Medians::ReportContext(const Context& /*context*/) {
    return true;
}

void Medians::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration) {
            times_[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
        }
    }
}

double fitted_exponent(const std::vector<double>& sizes, const std::vector<double>& times) {
    const auto count = static_cast<double>(sizes.size());
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const double log_size = std::log(sizes[i]);
        const double log_time = std::log(times[i]);
        x += log_size;
        y += log_time;
        xx += log_size * log_size;
        xy += log_size * log_time;
    }
    return (count * xy - x * y) / (count * xx - x * x);
}

}  // namespace bench
