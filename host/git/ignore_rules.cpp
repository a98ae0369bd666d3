#include "host/git/ignore_rules.h"

#include "host/files/checkout.h"

#include <algorithm>
#include <string>
#include <utility>

namespace host::git {

namespace {

// Without the blanks at its end, of which "\ " is none.
std::string_view without_blanks(std::string_view line) {
    while (line.ends_with(' ') && !line.ends_with("\\ ")) {
        line.remove_suffix(1);
    }
    return line;
}

}  // namespace

IgnoreRules::IgnoreRules(std::string_view text) {
    for (const std::string& whole : lines_of(text)) {
        std::string_view line = without_blanks(whole);
        if (line.starts_with('#')) {
            continue;
        }
        const bool ignores = !line.starts_with('!');
        line.remove_prefix(ignores ? 0 : 1);
        if (std::optional<Pattern> pattern = Pattern::read(line)) {
            rules_.push_back({std::move(*pattern), ignores});
        }
    }
}

std::optional<bool> IgnoreRules::decide(std::string_view path, bool is_folder) const {
    const auto last = std::find_if(rules_.rbegin(), rules_.rend(),
                                   [&](const Rule& rule) { return rule.pattern.matches(path, is_folder); });
    return last == rules_.rend() ? std::nullopt : std::optional(last->ignores);
}

}  // namespace host::git
