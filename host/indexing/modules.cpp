#include "host/indexing/modules.h"

#include "host/files/file_language.h"

#include <algorithm>
#include <utility>

namespace host::indexing {

namespace {

using sources::Link;

constexpr std::size_t MOST_STEPS = 100;  // from module to module; more than any real chain of re-exports

// "a.b.c" -> "a.b"; empty for a top-level module
std::string_view package_of(std::string_view module) {
    const std::size_t dot = module.rfind('.');
    return module.substr(0, dot == std::string_view::npos ? 0 : dot);
}

}  // namespace

bool is_python(std::string_view path) {
    return usual_language(path) == "python";
}

Modules::Modules(std::vector<Module> modules, NamesAtTop names_at_top, const sources::Sources& sources)
    : all_(std::move(modules)), names_at_top_(std::move(names_at_top)), sources_(sources) {
    for (const Module& module : all_) {
        modules_.try_emplace(module.path, &module);
        files_.try_emplace(module.symbol, module.path);
        if (is_python(module.path)) {
            python_modules_.try_emplace({module.release, module.name}, module.path);
        }
    }
}

Meaning Modules::exported(SymbolNumber module, const std::string& name) {
    const auto file = files_.find(module);
    return file == files_.end() ? Meaning() : follow(file->second, name, View::OUTSIDE, 0);
}

Meaning Modules::imported(std::string_view path, const std::string& name) {
    const std::span<const Link> links = links_of(path);
    const auto link = std::ranges::find(links, name, &Link::name);
    if (link == links.end()) {
        return {};
    }
    Meaning meaning = meant(path, name);
    return meaning.empty() ? followed(path, *link) : meaning;  // it re-exports a name that it does not import itself
}

Meaning Modules::followed(std::string_view path, const Link& link) {
    return follow(path, link, 0);
}

std::optional<SymbolNumber> Modules::module_at(std::string_view path) const {
    const auto found = modules_.find(path);
    return found == modules_.end() ? std::nullopt : std::optional(found->second->symbol);
}

const std::set<std::string_view>& Modules::reached_from(std::string_view path) {
    const auto known = reached_.find(path);
    return known != reached_.end() ? known->second : reached_.emplace(path, reach(path)).first->second;
}

std::set<std::string_view> Modules::reach(std::string_view path) {
    std::set<std::string_view> reached;
    std::vector<std::string_view> open{path};
    while (!open.empty()) {
        const std::string_view from = open.back();
        open.pop_back();
        for (const Link& link : links_of(from)) {
            const bool counts = !link.module.empty() && (from == path || link.is_exported);
            const std::optional<std::string_view> file = counts ? file_of(from, link.module) : std::nullopt;
            if (file && reached.insert(*file).second) {
                open.push_back(*file);
            }
        }
    }
    return reached;
}

std::span<const Link> Modules::links_of(std::string_view path) const {
    const sources::Outline* const outline = outline_of(path);
    return outline != nullptr ? std::span<const Link>(outline->links) : std::span<const Link>();
}

// Returns null for a file without an outline.
const sources::Outline* Modules::outline_of(std::string_view path) const {
    const auto source = sources_.find(std::string(path));
    const bool is_understood = source != sources_.end() && source->second.outline;
    return is_understood ? &*source->second.outline : nullptr;
}

// Whether other files can import the declaration of this name: any in Python, else those marked as exported.
bool Modules::exports(std::string_view path, const std::string& name) const {
    const sources::Outline* const outline = outline_of(path);
    return is_python(path) ||
           (outline != nullptr && std::ranges::any_of(outline->declarations, [&](const auto& declaration) {
                return declaration.is_marked && declaration.name == name;
            }));
}

// Whether a star import of the file includes this name.
bool Modules::passes_on_through_star(std::string_view path, const std::string& name) const {
    const sources::Outline* const outline = outline_of(path);
    const bool is_listed = outline != nullptr && outline->public_names.list(name);
    return !is_python(path) || is_listed || !name.starts_with('_');
}

std::optional<std::string_view> Modules::file_of(std::string_view path, const std::string& module) {
    const auto [known, is_new] = files_of_modules_.try_emplace({path, module});
    if (is_new && is_python(path)) {
        known->second = file_of_python_module(path, module);
    } else if (is_new) {
        for (const std::string& place : sources::places_of_module(path, module)) {
            if (const auto found = modules_.find(place); found != modules_.end()) {
                known->second = found->first;
                break;
            }
        }
    }
    return known->second;
}

// One leading dot means the file's package; each further dot means the package above.
std::optional<std::string_view> Modules::file_of_python_module(std::string_view path, std::string_view module) const {
    const auto own = modules_.find(path);
    if (own == modules_.end()) {
        return std::nullopt;
    }
    const std::string& own_name = own->second->name;
    const std::size_t dots = std::min(module.find_first_not_of('.'), module.size());
    std::string name(module.substr(dots));
    if (dots > 0) {
        std::string_view package = stands_for_folder(path) ? std::string_view(own_name) : package_of(own_name);
        for (std::size_t above = 1; above < dots; ++above) {
            package = package_of(package);
        }
        name = std::string(package).append(package.empty() || name.empty() ? "" : ".").append(name);
    }
    const auto found = python_modules_.find({own->second->release, name});
    return found == python_modules_.end() ? std::nullopt : std::optional(found->second);
}

// What a file declares under a name at its top level.
const Meaning& Modules::declared(std::string_view path, const std::string& name) {
    const auto [file, is_new] = declared_.try_emplace(path);
    const auto module = modules_.find(path);
    if (is_new && module != modules_.end()) {
        for (auto& [declared, symbol] : names_at_top_(*module->second)) {
            Meaning& meaning = file->second[std::move(declared)];
            if (std::ranges::find(meaning, symbol) == meaning.end()) {
                meaning.push_back(symbol);
            }
        }
        for (auto& [_, meaning] : file->second) {
            std::ranges::sort(meaning);
        }
    }
    return file->second[name];
}

Meaning Modules::follow(std::string_view path, const std::string& name, View view, std::size_t steps) {
    const auto [known, is_new] = known_.try_emplace({path, name, view});  // empty, which ends a cycle of imports
    if (is_new && steps <= MOST_STEPS) {
        known->second = follow_all(path, name, view, steps);
    }
    return known->second;
}

Meaning Modules::follow_all(std::string_view path, const std::string& name, View view, std::size_t steps) {
    Meaning meaning = view == View::INSIDE || exports(path, name) ? declared(path, name) : Meaning();
    for (const Link& link : links_of(path)) {
        const bool is_seen =
            is_python(path) ? view == View::INSIDE || link.is_exported : link.is_exported == (view == View::OUTSIDE);
        if (link.name == name && is_seen) {
            Meaning found = follow(path, link, steps + 1);
            if (!found.empty() && !meaning.empty() && meaning != found) {
                return {};
            }
            if (!found.empty()) {
                meaning = std::move(found);
            }
        }
    }
    if (meaning.empty() && view == View::OUTSIDE) {
        meaning = follow_stars(path, name, steps);
    }
    if (meaning.empty() && view == View::OUTSIDE && stands_for_folder(path)) {
        const auto inner = file_of(path, "." + name);
        return inner ? Meaning{modules_.at(*inner)->symbol} : Meaning();
    }
    return meaning;
}

Meaning Modules::follow_stars(std::string_view path, const std::string& name, std::size_t steps) {
    Meaning meaning;
    for (const Link& link : links_of(path)) {
        const std::optional<std::string_view> module =
            link.name.empty() && link.is_exported ? file_of(path, link.module) : std::nullopt;
        if (module && passes_on_through_star(*module, name)) {
            Meaning found = follow(*module, name, View::OUTSIDE, steps + 1);
            if (!meaning.empty() && !found.empty() && meaning != found) {
                return {};
            }
            if (!found.empty()) {
                meaning = std::move(found);
            }
        }
    }
    return meaning;
}

Meaning Modules::follow(std::string_view path, const Link& link, std::size_t steps) {
    if (link.module.empty()) {
        return follow(path, link.original, View::INSIDE, steps);
    }
    const std::optional<std::string_view> module = file_of(path, link.module);
    if (link.original.empty()) {
        return module ? Meaning{modules_.at(*module)->symbol} : Meaning();
    }
    if (!module && is_python(path)) {  // a namespace package: a folder without an `__init__.py`
        const auto inner = file_of(path, link.module + (link.module.ends_with('.') ? "" : ".") + link.original);
        return inner ? Meaning{modules_.at(*inner)->symbol} : Meaning();
    }
    return module ? follow(*module, link.original, View::OUTSIDE, steps) : Meaning();
}

}  // namespace host::indexing
