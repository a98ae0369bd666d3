#include "host/scip/unseen_names.h"

#include "host/scip/built_in_names.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using indexing::Meaning;
using sources::Link;

// What a text means, and how many names of the source have it.
struct Mentioned {
    Meaning meaning;
    std::int64_t count = 0;
};

class UnseenNames {
  public:
    UnseenNames(Contents& contents, indexing::Modules& modules, const UndeclaredByFile& undeclared)
        : contents_(contents), modules_(modules), undeclared_(undeclared), built_in_(built_in_names(contents.symbols)) {
    }

    void add() {
        for (auto& [path, file] : contents_.files) {
            if (file.tokens_seen) {
                for (const Link& link : modules_.links_of(path)) {
                    add_link(path, link, file);
                }
                move_built_in(path, file);
                file.tokens_seen.reset();
            }
        }
    }

  private:
    // Counts what the source has by a link beyond what tokens name.
    void add_link(std::string_view path, const Link& link, FileContents& file) {
        const Meaning meaning = modules_.followed(path, link);
        add_module(path, link, meaning, file);
        if (link.name.empty() || meaning.empty()) {
            return;
        }
        std::int64_t mentions = 1;  // where it is imported
        std::map<std::string, Mentioned> members;
        for (const auto& [behind, count] : link.mentions) {
            mentions += count;
            add_members(link.name, meaning, behind, count, members);
        }
        const TextCounts& seen = *file.tokens_seen;
        const std::int64_t tokens = seen.of(link.name) + seen.of(link.original + " as " + link.name);
        contents_.add_references(file, meaning, mentions - tokens);
        for (const auto& [text, member] : members) {
            contents_.add_references(file, member.meaning, member.count - seen.of(text));
        }
    }

    // The file that a link leads to is used, even where nothing else of it is.
    void add_module(std::string_view path, const Link& link, const Meaning& meaning, FileContents& file) {
        const bool is_module = meaning.size() == 1 && modules_.is_module(meaning.front());
        const std::optional<std::string_view> module = is_module ? std::nullopt : modules_.file_of(path, link.module);
        const Meaning used = is_module ? meaning : module ? Meaning{modules_.module_at(*module).value()} : Meaning();
        if (!used.empty() && !file.references.contains(used.front())) {
            contents_.add_references(file, used, 1);
        }
    }

    // Adds what is named behind a module, by the text of its token with the name before: for "base.Model" behind models
    // that is "models.base" and "base.Model".
    void add_members(std::string before, Meaning meaning, std::string_view behind, std::int64_t count,
                     std::map<std::string, Mentioned>& members) {
        while (!behind.empty() && meaning.size() == 1 && modules_.is_module(meaning.front())) {
            const std::string name(behind.substr(0, behind.find('.')));
            behind.remove_prefix(std::min(name.size() + 1, behind.size()));
            meaning = modules_.exported(meaning.front(), name);
            if (!meaning.empty()) {
                Mentioned& member = members[before.append(".").append(name)];
                member.meaning = meaning;
                member.count += count;
            }
            before = name;
        }
    }

    // Gives to the file's own names what its document takes for names of the language.
    void move_built_in(std::string_view path, FileContents& file) {
        std::vector<Mentioned> moved;
        std::erase_if(file.references, [&](const auto& reference) {
            const auto name = built_in_.find(reference.first);
            Meaning meaning = name == built_in_.end() ? Meaning() : modules_.meant(path, name->second);
            const bool is_hidden = !meaning.empty();
            if (is_hidden) {
                // One of the tokens of what no document defines is where it is declared.
                const std::int64_t declaring = is_undeclared(path, meaning.front()) ? 1 : 0;
                moved.push_back({std::move(meaning), reference.second - declaring});
            }
            return is_hidden;
        });
        for (Mentioned& each : moved) {
            contents_.add_references(file, std::move(each.meaning), each.count);
        }
    }

    [[nodiscard]] bool is_undeclared(std::string_view path, SymbolNumber symbol) const {
        const auto file = undeclared_.find(path);
        return file != undeclared_.end() &&
               std::ranges::find(file->second, symbol, &Undeclared::symbol) != file->second.end();
    }

    Contents& contents_;
    indexing::Modules& modules_;
    const UndeclaredByFile& undeclared_;
    const std::unordered_map<SymbolNumber, std::string> built_in_;
};

}  // namespace

void add_unseen_names(Contents& contents, indexing::Modules& modules, const UndeclaredByFile& undeclared) {
    UnseenNames(contents, modules, undeclared).add();
}

}  // namespace host::scip
