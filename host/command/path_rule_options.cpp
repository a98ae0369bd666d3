#include "host/command/path_rule_options.h"

#include "host/text/glob.h"

#include <CLI/CLI.hpp>

#include <stdexcept>

namespace host {

namespace {

void add_patterns(CLI::App& command, const std::string& name, std::vector<std::string>& patterns,
                  const std::string& help) {
    const auto problem_of = [](const std::string& pattern) -> std::string {
        try {
            Glob{pattern};
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
        return pattern.empty() ? "an empty pattern" : "";
    };
    command.add_option(name, patterns, help)
        ->type_name("GLOB")
        ->allow_extra_args(false)
        ->check(problem_of)
        ->group("Path rules");
}

}  // namespace

void add_test_options(CLI::App& command, PathRuleOptions& options) {
    add_patterns(command, "--test", options.holds, "Files that are tests, whatever their names; may be repeated");
    add_patterns(command, "--not-test", options.does_not, "Files that are not tests; may be repeated");
}

void add_exclusion_options(CLI::App& command, PathRuleOptions& options) {
    add_patterns(command, "--exclude", options.holds, "Files to leave out; may be repeated");
    add_patterns(command, "--include", options.does_not, "Files to keep that would be left out; may be repeated");
}

}  // namespace host
