// An option that names a file or a folder.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace embedded {

/// Adds a required option or argument. An empty name is wrong usage: it is what a script gives whose variable is unset.
inline CLI::Option* add_file_option(CLI::App& command, const std::string& name, std::string& path,
                                    const std::string& help) {
    const auto problem_of = [](const std::string& given) { return given.empty() ? "an empty name" : ""; };
    return command.add_option(name, path, help)->required()->check(problem_of);
}

}  // namespace embedded
