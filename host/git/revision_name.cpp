#include "host/git/revision_name.h"

#include "host/text/control_characters.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace host::git {

namespace {

// Whether a reference can bear the name, so that it stands for no file elsewhere.
bool is_base(std::string_view base) {
    return !base.empty() && !base.starts_with('/') && !base.starts_with('-') && !base.starts_with('.') &&
           base.find("..") == std::string_view::npos && base.find("/.") == std::string_view::npos &&
           base.find("//") == std::string_view::npos && !base.ends_with('/') &&
           base.find_first_of(" :?*[\\{") == std::string_view::npos && !has_control_character(base);
}

// Takes a number off the beginning of a text; 1 where there is none. None for one that is too large.
std::optional<std::size_t> take_number(std::string_view& text) {
    constexpr std::size_t LARGEST = 1'000'000'000;
    std::size_t number = 1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc::result_out_of_range || number > LARGEST ? std::nullopt : std::optional(number);
}

bool take(std::string_view& text, std::string_view beginning) {
    const bool is_there = text.starts_with(beginning);
    text.remove_prefix(is_there ? beginning.size() : 0);
    return is_there;
}

}  // namespace

std::optional<RevisionName> revision_name(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of("~^"), text.size());
    RevisionName name{.base = std::string(text.substr(0, end)), .steps = {}};
    name.base = name.base == "@" ? "HEAD" : name.base;
    text.remove_prefix(end);
    if (!is_base(name.base)) {
        return std::nullopt;
    }
    while (!text.empty()) {
        if (take(text, "^{}") || take(text, "^{commit}")) {
            continue;
        }
        const bool is_generation = take(text, "~");
        const bool is_parent = !is_generation && take(text, "^");
        const std::optional<std::size_t> number = is_generation || is_parent ? take_number(text) : std::nullopt;
        if (!number) {
            return std::nullopt;
        }
        name.steps.push_back(is_generation ? Step{.generations = *number, .parent = 1}
                                           : Step{.generations = *number == 0 ? 0U : 1U, .parent = *number});
    }
    return name;
}

}  // namespace host::git
