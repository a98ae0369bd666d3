// When a Go file is compiled, by the comments above its package clause.
#include "host/sources/go/go_reader.h"

#include <algorithm>

namespace host::sources {

namespace {

// Cuts what stands up to a separator, or all, off a text. Returns it.
std::string_view cut(std::string_view& text, std::string_view separators) {
    text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
    const std::string_view first = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(first.size());
    return first;
}

// `// +build linux,cgo darwin`, as `(linux && cgo || darwin)`.
std::string without_old_form(std::string_view options) {
    std::string any;
    for (std::string_view option = cut(options, " \t"); !option.empty(); option = cut(options, " \t")) {
        any += any.empty() ? "(" : " || ";
        for (std::string_view tag = cut(option, ","); !tag.empty(); tag = cut(option, ",")) {
            any.append(any.ends_with('(') || any.ends_with(' ') ? "" : " && ").append(tag);
        }
    }
    return any.empty() ? any : any + ")";
}

}  // namespace

// A `//go:build` replaces every `// +build`, all of which must hold.
syntax::ExpressionId GoReader::read_comment(const Node& node) {
    constexpr std::string_view NEW_FORM = "//go:build ";
    constexpr std::string_view OLD_FORM = "// +build ";
    const std::string_view comment = text(node);
    if (is_before_package_ && comment.starts_with(NEW_FORM)) {
        constraint_ = comment.substr(NEW_FORM.size());
        has_new_constraint_ = true;
    } else if (is_before_package_ && !has_new_constraint_ && comment.starts_with(OLD_FORM)) {
        constraint_.append(constraint_.empty() ? "" : " && ").append(without_old_form(comment.substr(OLD_FORM.size())));
    }
    return syntax::UNKNOWN;
}

}  // namespace host::sources
