// The options for the format of results.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A format, and whom it is for: "for a browser".
struct FurtherFormat {
    std::string name;
    std::string purpose;
};

/// Adds "--format FORMAT", whose choices are the initial value of `format`, for people, "json", and `further`; and
/// "--json-schema", which has the command print `schema`, that of its JSON, and do nothing else.
inline void add_format_options(CLI::App& command, std::string& format, std::string_view schema,
                               const std::vector<FurtherFormat>& further = {}) {
    std::vector<std::string> names{format, "json"};
    std::string help = format + " for people, json for programs";
    for (const FurtherFormat& each : further) {
        names.push_back(each.name);
        help += ", " + each.name + " " + each.purpose;
    }
    command.add_option("--format", format, help)
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names))
        ->capture_default_str();
    command.add_flag_callback(
        "--json-schema", [schema] { throw CLI::CallForVersion(std::string(schema), 0); },
        "Print the JSON Schema of what --format json prints, and nothing else");
}

}  // namespace host
