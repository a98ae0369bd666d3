// Times of one run of benchmarks, to be set in proportion to one another.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Runs what is registered with it and keeps the median time of each. The repetitions of all of them alternate at
/// random, so that a machine that speeds up or slows down does so for each of them.
class Medians : private benchmark::ConsoleReporter {
  public:
    /// To be called once, before the first use.
    static void start();

    void add(const std::string& name, const std::function<void()>& run, int repetitions);
    void run();

    /// Processor time of one run of `name`, in milliseconds; `run` must have run it.
    [[nodiscard]] double of(const std::string& name) const;

  private:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    std::map<std::string, std::vector<double>> times_;
};

/// The exponent e of the power law n^e that fits best the times at the sizes n: the slope of a straight line through
/// their logarithms, by least squares.
double fitted_exponent(const std::vector<double>& sizes, const std::vector<double>& times);

}  // namespace bench
