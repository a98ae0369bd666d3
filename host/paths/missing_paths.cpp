#include "host/paths/missing_paths.h"

#include "models/ordered_map.h"

namespace host {

std::vector<std::string> remarks_on_missing(std::span<const std::string> missing,
                                            std::span<const Suggestion> suggestions, bool is_failure) {
    models::OrderedMap<std::string, std::string> nearest;
    for (const Suggestion& suggestion : suggestions) {
        nearest[suggestion.missing] = "; did you mean " + suggestion.nearest + "?";
    }
    std::vector<std::string> remarks;
    for (const std::string& path : missing) {
        if (is_failure || nearest.contains(path)) {
            remarks.push_back((path + ": not in the index").append(nearest.get(path, "")));
        }
    }
    return remarks;
}

}  // namespace host
