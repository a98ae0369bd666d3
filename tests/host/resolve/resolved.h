// References of a few sources, as text for tests.
#pragma once

#include "host/files/file_language.h"
#include "host/resolve/resolver.h"
#include "host/sources/outline.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace host::resolve {

/// The name of a declaration with those around it: "Store.find"; of a module its path.
inline std::string name_of(const Repository& repository, const Target& target) {
    const File& file = repository.files[target.file];
    std::string name;
    for (syntax::DeclarationId id = target.declaration; id != Target::MODULE;
         id = file.syntax->declarations[id].parent) {
        const std::string own(file.syntax->name(file.syntax->declarations[id].name));
        name = name.empty() ? own : own + "." + name;
    }
    return name.empty() ? file.path : name;
}

/// What a few sources state; in the order of their paths.
struct Stated {
    std::vector<sources::Outline> outlines;
    Repository repository;  // points to them
};

/// Reads sources: of each its path, and its text.
inline Stated stated(const std::map<std::string, std::string>& sources, const std::vector<Package>& packages = {}) {
    static const std::atomic<bool> never = false;
    Stated stated{.outlines = {}, .repository = {.files = {}, .packages = packages}};
    stated.outlines.reserve(sources.size());
    for (const auto& [path, text] : sources) {
        stated.outlines.push_back(sources::outline_of(text, "", path, never, sources::Content::TOKENS).value());
        stated.repository.files.push_back(
            {path, sources::understood_language("", path)->name, &*stated.outlines.back().syntax});
    }
    return stated;
}

/// Returns the references of a file: "a.py: import Store.find of b.py, 2 from line 3", one a line.
inline std::string references_text(const Repository& repository, const Resolver& resolver, FileId file) {
    constexpr std::array<std::string_view, 4> EVIDENCE{"ambiguous", "import", "local", "unique"};
    std::string text;
    for (const Reference& reference : resolver.references_of(file).references) {
        text += repository.files[file].path + ": " +
                std::string(EVIDENCE.at(static_cast<std::size_t>(reference.evidence))) + " " +
                name_of(repository, reference.target) + " of " + repository.files[reference.target.file].path + ", " +
                std::to_string(reference.count) + " from line " + std::to_string(reference.line) + "\n";
    }
    return text;
}

/// Returns all references between the sources, by path.
inline std::string resolved(const std::map<std::string, std::string>& sources,
                            const std::vector<Package>& packages = {}) {
    const Stated all = stated(sources, packages);
    const Resolver resolver(all.repository);
    std::string text;
    for (FileId file = 0; file < all.repository.files.size(); ++file) {
        text += references_text(all.repository, resolver, file);
    }
    return text;
}

/// Returns what the source at `path` refers to: "b.py:Store.find*2 ?c.py:f b.py", with how often where that is not
/// once, "?" before what is ambiguous, and a file alone for a module.
inline std::string targets_from(const std::string& path, const std::map<std::string, std::string>& sources,
                                const std::vector<Package>& packages = {}) {
    std::istringstream lines(resolved(sources, packages));
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string from;
        std::string evidence;
        std::string name;
        std::string of;
        std::string file;
        std::string count;
        words >> from >> evidence >> name >> of >> file >> count;
        file.pop_back();  // the comma
        if (from == path + ":") {
            found += (found.empty() ? "" : " ") + std::string(evidence == "ambiguous" ? "?" : "") + file +
                     (name == file ? "" : ":" + name) + (count == "1" ? "" : "*" + count);
        }
    }
    return found;
}

}  // namespace host::resolve
