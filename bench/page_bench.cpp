// What each function costs in bare passes over the references, and how its cost grows.

#include "bench/functions.h"
#include "bench/generated_page.h"
#include "bench/medians.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using bench::Function;
using bench::functions;
using bench::Medians;
using bench::Page;
using bench::Shape;

constexpr const char* BARE_PASS = "bare pass";

Medians times_on(const Shape& shape, int repetitions) {
    const Page page{bench::generated_page(shape)};
    Medians medians;
    medians.add(
        BARE_PASS, [&] { bench::bare_pass(page); }, repetitions);
    for (const Function& function : functions()) {
        medians.add(
            function.name, [&] { function.run(page); }, repetitions);
    }
    medians.run();
    return medians;
}

void print_costs() {
    constexpr int REPETITIONS = 9;
    const Medians typical = times_on(bench::TYPICAL, REPETITIONS);
    const Medians large = times_on(bench::LARGE, REPETITIONS);
    std::printf("\nOne bare pass: typical page %.3f ms, large page %.1f ms\n\n", typical.of(BARE_PASS),
                large.of(BARE_PASS));
    std::printf("| In bare passes | typical page | large page |\n|---|---|---|\n");
    for (const Function& function : functions()) {
        std::printf("| `%s` | %.2f | %.2f |\n", function.name.c_str(),
                    typical.of(function.name) / typical.of(BARE_PASS), large.of(function.name) / large.of(BARE_PASS));
    }
}

// The bare pass and every function.
std::vector<std::string> names() {
    std::vector<std::string> names{BARE_PASS};
    for (const Function& function : functions()) {
        names.push_back(function.name);
    }
    return names;
}

// How each of `names()` grows from the first to the last of some pages whose sizes are known.
std::vector<double> exponents(const Shape& shape, const std::vector<int>& factors) {
    constexpr int REPETITIONS = 3;
    std::vector<double> sizes(factors.begin(), factors.end());
    std::vector<std::vector<double>> times(names().size());
    for (const int factor : factors) {
        const Medians medians = times_on(shape.times(factor), REPETITIONS);
        for (std::size_t i = 0; i < times.size(); ++i) {
            times[i].push_back(medians.of(names()[i]));
        }
    }
    std::vector<double> fitted;
    for (const std::vector<double>& of_function : times) {
        fitted.push_back(bench::fitted_exponent(sizes, of_function));
    }
    return fitted;
}

void print_growth() {
    struct Growth {
        const char* name;
        Shape shape;
        std::vector<int> factors;
    };
    // The last page of each row has 100,000 of what the row is named after.
    const std::array<Growth, 6> growths{{
        {"plain",
         {.files = 250, .declarations = 12'500, .inbound = 125'000, .outbound = 62'500, .sources = 5'000},
         {1, 2, 4, 8}},
        {"nested types",
         {.files = 12,
          .declarations = 25'000,
          .inbound = 25'000,
          .outbound = 25'000,
          .sources = 800,
          .one_file = true,
          .nested_types = true},
         {1, 2, 4}},
        {"one file",
         {.files = 12, .declarations = 25'000, .inbound = 25'000, .outbound = 25'000, .sources = 800, .one_file = true},
         {1, 2, 4}},
        {"one source",
         {.files = 250,
          .declarations = 25'000,
          .inbound = 25'000,
          .outbound = 25'000,
          .sources = 800,
          .one_source = true},
         {1, 2, 4}},
        {"a file each",
         {.files = 25'000, .declarations = 25'000, .inbound = 25'000, .outbound = 25'000, .sources = 800},
         {1, 2, 4}},
        {"a resolution each",
         {.files = 250,
          .declarations = 2'500,
          .inbound = 25'000,
          .outbound = 25'000,
          .sources = 800,
          .distinct_resolutions = true},
         {1, 2, 4}},
    }};
    std::printf("\nFitted exponents of growth (n log n fits 1.1 at these sizes)\n\n| |");
    std::vector<std::vector<double>> columns;
    for (const Growth& growth : growths) {
        std::printf(" %s |", growth.name);
        columns.push_back(exponents(growth.shape, growth.factors));
    }
    std::printf("\n|---|---|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < names().size(); ++i) {
        std::printf("| `%s` |", names()[i].c_str());
        for (const std::vector<double>& column : columns) {
            std::printf(" %.2f |", column[i]);
        }
        std::printf("\n");
    }
}

}  // namespace

int main() {
    Medians::start();
    print_costs();
    print_growth();
}
