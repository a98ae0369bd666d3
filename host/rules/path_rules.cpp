#include "host/rules/path_rules.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace host {

namespace {

// Whether the glob matches the path or a folder above it. A glob that is not anchored is matched against their names.
bool covers(const Glob& glob, bool is_anchored, std::string_view path) {
    std::size_t name = 0;
    while (true) {
        const std::size_t end = std::min(path.find('/', name), path.size());
        if (glob.matches(path.substr(is_anchored ? 0 : name, is_anchored ? end : end - name))) {
            return true;
        }
        if (end == path.size()) {
            return false;
        }
        name = end + 1;
    }
}

}  // namespace

std::vector<PathRule> rules_of(const std::vector<std::string>& holds, const std::vector<std::string>& does_not) {
    std::vector<PathRule> rules;
    rules.reserve(holds.size() + does_not.size());
    for (const std::string& pattern : does_not) {
        rules.push_back({pattern, false});
    }
    for (const std::string& pattern : holds) {
        rules.push_back({pattern, true});
    }
    return rules;
}

std::string to_json(const std::vector<PathRule>& rules) {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& [pattern, holds] : rules) {
        list.push_back({{"pattern", pattern}, {"holds", holds}});
    }
    return rules.empty() ? "" : list.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::vector<PathRule> read_rules(std::string_view json) {
    std::vector<PathRule> rules;
    if (json.empty()) {
        return rules;
    }
    try {
        for (const nlohmann::json& rule : nlohmann::json::parse(json)) {
            rules.push_back({rule.at("pattern").get<std::string>(), rule.at("holds").get<bool>()});
        }
    } catch (const nlohmann::json::exception&) {
        throw std::runtime_error("the path rules in the index cannot be read; import the SCIP file again");
    }
    return rules;
}

PathRules::PathRules(const std::vector<PathRule>& rules) {
    for (const auto& [pattern, holds] : rules) {
        std::string_view text = pattern;
        text.remove_suffix(text.ends_with('/') ? 1 : 0);
        const bool is_anchored = text.find('/') != std::string_view::npos;
        text.remove_prefix(text.starts_with('/') ? 1 : 0);
        rules_.push_back({Glob(text), is_anchored, holds});
    }
}

std::optional<bool> PathRules::decide(std::string_view path) const {
    const auto rule =
        std::ranges::find_if(rules_, [&](const Prepared& each) { return covers(each.glob, each.is_anchored, path); });
    return rule == rules_.end() ? std::nullopt : std::optional(rule->holds);
}

}  // namespace host
