#include "host/git/pattern.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace host::git {

namespace {

// The pattern for `Glob`, where braces are special and "a/**" matches "a", too.
std::string in_globs(std::string_view pattern) {
    std::string glob;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (pattern[at] == '\\' && at + 1 < pattern.size()) {
            glob += pattern[at++];
        } else if (pattern[at] == '{' || pattern[at] == '}') {
            glob += '\\';
        }
        glob += pattern[at];
    }
    return glob.ends_with("/**") ? glob + "/*" : glob;
}

}  // namespace

std::optional<Pattern> Pattern::read(std::string_view text) {
    const bool is_for_folders = text.ends_with('/');
    text.remove_suffix(is_for_folders ? 1 : 0);
    const bool is_name = text.find('/') == std::string_view::npos;
    text.remove_prefix(text.starts_with('/') ? 1 : 0);
    if (text.empty()) {
        return std::nullopt;
    }
    try {
        Pattern pattern{Glob(in_globs(text))};
        pattern.is_name_ = is_name;
        pattern.is_for_folders_ = is_for_folders;
        return pattern;
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

bool Pattern::matches(std::string_view path, bool is_folder) const {
    return (is_folder || !is_for_folders_) && glob_.matches(is_name_ ? path.substr(path.rfind('/') + 1) : path);
}

}  // namespace host::git
