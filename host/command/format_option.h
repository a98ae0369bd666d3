// The options for the format of results.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Adds "--format FORMAT", whose choices are the initial value of `format`, for people, and "json"; and
/// "--json-schema", which has the command print `schema`, that of its JSON, and do nothing else.
inline void add_format_options(CLI::App& command, std::string& format, std::string_view schema) {
    command.add_option("--format", format, format + " for people, json for programs")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(std::vector<std::string>{format, "json"}))
        ->capture_default_str();
    command.add_flag_callback(
        "--json-schema", [schema] { throw CLI::CallForVersion(std::string(schema), 0); },
        "Print the JSON Schema of what --format json prints, and nothing else");
}

}  // namespace host
