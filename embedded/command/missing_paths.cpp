#include "embedded/command/missing_paths.h"

#include "embedded/command/standard_error.h"
#include "models/ordered_map.h"

#include <CLI/CLI.hpp>

namespace embedded {

void judge_missing_paths(std::span<const std::string> missing, std::span<const Suggestion> suggestions,
                         bool is_failure) {
    models::OrderedMap<std::string, std::string> nearest;
    for (const Suggestion& suggestion : suggestions) {
        nearest[suggestion.missing] = "; did you mean " + suggestion.nearest + "?";
    }
    for (const std::string& path : missing) {
        if (is_failure || nearest.contains(path)) {
            say((path + ": not in the index").append(nearest.get(path, "")));
        }
    }
    if (is_failure) {
        throw CLI::RuntimeError(1);
    }
}

}  // namespace embedded
