// The option for the format of results.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace host {

/// Adds "--format FORMAT". The choices are the initial value of `format`, for people, and "json".
inline void add_format_option(CLI::App& command, std::string& format) {
    command.add_option("--format", format, format + " for people, json for programs")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(std::vector<std::string>{format, "json"}))
        ->capture_default_str();
}

}  // namespace host
