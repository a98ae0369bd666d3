// An option for files or a folder.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace host {

/// Adds a required option or argument that is stored in a string or a list of strings. Rejects an empty name, which a
/// script passes when its variable is unset.
CLI::Option* add_file_option(CLI::App& command, const std::string& name, auto& paths, const std::string& help) {
    const auto problem_of = [](const std::string& given) { return given.empty() ? "an empty name" : ""; };
    return command.add_option(name, paths, help)->required()->check(problem_of);
}

}  // namespace host
