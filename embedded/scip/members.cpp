#include "embedded/scip/members.h"

#include "embedded/scip/symbol.h"
#include "embedded/text/blanks.h"
#include "embedded/text/utf8.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::scip {

namespace {

using sources::Link;

// What a name stands for: all symbols of one declaration, or that of a module; empty when nobody knows.
using Meaning = std::vector<SymbolNumber>;

// Knows what the names of the modules of a repository stand for.
class Modules {
  public:
    Modules(const Contents& contents, const sources::Sources& sources) : contents_(contents), sources_(sources) {
        for (const auto& [path, file] : contents.files) {
            for (const Definition& definition : file.definitions) {
                if (contents.symbols.is_namespace(definition.symbol) &&
                    is_module_of(parse(definition.symbol).descriptors, path)) {
                    modules_.try_emplace(path, definition.symbol);
                    files_.try_emplace(definition.symbol, path);
                }
            }
        }
    }

    // What a name that the module exports stands for.
    const Meaning& exported(SymbolNumber module, const std::string& name) {
        const auto [known, is_new] = known_.try_emplace({module, name});
        if (const auto file = files_.find(module); is_new && file != files_.end()) {
            visited_.clear();
            known->second = follow(file->second, name, View::OUTSIDE, 0);
        }
        return known->second;
    }

  private:
    enum class View { INSIDE, OUTSIDE };  // which names are meant: all of the file, or those that it exports

    [[nodiscard]] Symbol parse(SymbolNumber symbol) const {
        return parse_symbol(contents_.symbols.symbol(symbol)).value();
    }

    Meaning follow(std::string_view path, const std::string& name, View view, std::size_t steps) {
        constexpr std::size_t MOST_STEPS = 100;  // from module to module; nobody's names come that far
        if (steps > MOST_STEPS || !visited_.insert({path, name, view}).second) {
            return {};
        }
        const std::span<const Link> links = links_of(path);
        const auto link = std::ranges::find_if(
            links, [&](const Link& each) { return each.name == name && each.is_exported == (view == View::OUTSIDE); });
        if (link != links.end()) {
            return follow(path, *link, steps + 1);
        }
        Meaning meaning = view == View::INSIDE || exports(path, name) ? declared(path, name) : Meaning();
        for (auto all = links.begin(); meaning.empty() && view == View::OUTSIDE && all != links.end(); ++all) {
            if (all->name.empty()) {
                const std::optional<std::string_view> module = module_of(path, *all);
                meaning = module ? follow(*module, name, View::OUTSIDE, steps + 1) : Meaning();
            }
        }
        return meaning;
    }

    Meaning follow(std::string_view path, const Link& link, std::size_t steps) {
        if (link.module.empty()) {
            return follow(path, link.original, View::INSIDE, steps);
        }
        const std::optional<std::string_view> module = module_of(path, link);
        if (!module) {
            return {};
        }
        return link.original.empty() ? Meaning{modules_.at(*module)}
                                     : follow(*module, link.original, View::OUTSIDE, steps);
    }

    // Null for a file without one.
    [[nodiscard]] const sources::Outline* outline_of(std::string_view path) const {
        const auto source = sources_.find(std::string(path));
        const bool is_understood = source != sources_.end() && source->second.outline;
        return is_understood ? &*source->second.outline : nullptr;
    }

    [[nodiscard]] std::span<const Link> links_of(std::string_view path) const {
        const sources::Outline* const outline = outline_of(path);
        return outline != nullptr ? std::span<const Link>(outline->links) : std::span<const Link>();
    }

    // Whether a file marks what it declares by this name as exported.
    [[nodiscard]] bool exports(std::string_view path, const std::string& name) const {
        const sources::Outline* const outline = outline_of(path);
        return outline != nullptr && std::ranges::any_of(outline->declarations, [&](const auto& declaration) {
                   return declaration.is_marked && declaration.name == name;
               });
    }

    // The file of the module that a link of the file at `path` names.
    std::optional<std::string_view> module_of(std::string_view path, const Link& link) {
        const auto [known, is_new] = modules_of_links_.try_emplace(&link);
        if (is_new) {
            for (const std::string& place : sources::places_of_module(path, link.module)) {
                if (const auto module = modules_.find(place); module != modules_.end()) {
                    known->second = module->first;
                    break;
                }
            }
        }
        return known->second;
    }

    // What a file declares under a name at its top.
    const Meaning& declared(std::string_view path, const std::string& name) {
        const auto [file, is_new] = declared_.try_emplace(path);
        if (is_new) {
            const std::string_view module = contents_.symbols.symbol(modules_.at(path));
            for (const Definition& definition : contents_.files.find(std::string(path))->second.definitions) {
                const Symbol symbol = parse(definition.symbol);
                if (symbol.scope == module) {
                    file->second[symbol.descriptors.back().name].push_back(definition.symbol);
                }
            }
        }
        return file->second[name];
    }

    const Contents& contents_;
    const sources::Sources& sources_;
    std::map<std::string_view, SymbolNumber> modules_;  // by path
    std::unordered_map<SymbolNumber, std::string_view> files_;
    std::unordered_map<const Link*, std::optional<std::string_view>> modules_of_links_;
    std::map<std::string_view, std::unordered_map<std::string, Meaning>> declared_;  // by path, then name
    std::map<std::pair<SymbolNumber, std::string>, Meaning> known_;                  // by module and exported name
    std::set<std::tuple<std::string_view, std::string, View>> visited_;              // on the way to one meaning
};

// The part of a text from one place to another, without line ends; empty where that is none.
std::string part(const std::vector<std::string>& lines, std::int32_t line, std::int32_t column, std::int32_t last_line,
                 std::int32_t end_column) {
    std::string text;
    if (line < 0 || column < 0 || end_column < 0 || static_cast<std::size_t>(last_line) >= lines.size()) {
        return text;
    }
    for (std::int32_t each = line; each <= last_line; ++each) {
        std::string_view rest = lines[static_cast<std::size_t>(each)];
        if (each == last_line) {
            rest.remove_suffix(from_column(rest, static_cast<std::size_t>(end_column)).size());
        }
        text += from_column(rest, each == line ? static_cast<std::size_t>(column) : 0);
    }
    return text;
}

// The text of a member, if only a dot stands before it.
std::optional<std::string> name_of(const Member& member, const std::vector<std::string>& lines) {
    const auto& [of, before, range] = member;
    const std::string link = part(lines, before.end_line, before.end_column, range.start_line, range.start_column);
    std::string name = part(lines, range.start_line, range.start_column, range.end_line, range.end_column);
    return trimmed(link) == "." && !name.empty() ? std::optional(std::move(name)) : std::nullopt;
}

void count_members_of(FileContents& file, const std::vector<std::string>& lines, Modules& modules, Contents& contents) {
    std::optional<SymbolNumber> before;  // what the member before stands for, if that is a module
    for (const Member& member : file.members) {
        const std::optional<SymbolNumber> of = member.of ? member.of : before;
        const std::optional<std::string> name = of ? name_of(member, lines) : std::nullopt;
        Meaning meaning = name ? modules.exported(*of, *name) : Meaning();
        std::ranges::sort(meaning);
        meaning.erase(std::unique(meaning.begin(), meaning.end()), meaning.end());
        if (!meaning.empty()) {
            ++file.references[contents.tokens.number(meaning, contents.symbols)];
        }
        before = meaning.size() == 1 ? std::optional(meaning.front()) : std::nullopt;
    }
}

}  // namespace

void count_members(Contents& contents, const sources::Sources& sources, const Checkout& checkout) {
    std::optional<Modules> modules;
    for (auto& [path, file] : contents.files) {
        if (file.members.empty()) {
            continue;
        }
        if (!modules) {
            modules.emplace(contents, sources);
        }
        if (const std::optional<FileLines> read = checkout.read_lines(path)) {
            count_members_of(file, read->lines, *modules, contents);
        }
    }
}

}  // namespace embedded::scip
