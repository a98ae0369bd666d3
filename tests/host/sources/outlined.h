// The outline of a text, for tests.
#pragma once

#include "host/sources/outline.h"

#include <algorithm>
#include <atomic>
#include <string>

namespace host::sources {

inline Outline outline(const std::string& path, const std::string& text) {
    static const std::atomic<bool> never = false;
    return outline_of(text, *understood_language("", path), never).value();
}

/// Returns the outline with what each name of the text is looked up in, and where it stands.
inline Outline names_in(const std::string& path, const std::string& text) {
    static const std::atomic<bool> never = false;
    return outline_of(text, "", path, never, Content::TOKENS).value();
}

inline SourceDeclaration declaration(const std::string& path, const std::string& text, const std::string& name) {
    const Outline all = outline(path, text);
    const auto found = std::ranges::find(all.declarations, name, &SourceDeclaration::name);
    return found == all.declarations.end() ? SourceDeclaration{} : *found;
}

}  // namespace host::sources
