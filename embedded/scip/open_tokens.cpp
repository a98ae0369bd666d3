#include "embedded/scip/open_tokens.h"

#include "embedded/scip/language.h"
#include "embedded/scip/modules.h"
#include "embedded/scip/token_text.h"
#include "embedded/text/blanks.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace embedded::scip {

namespace {

using sources::Link;

// "'./m'" -> "./m"; empty for a text without quotes
std::string_view without_quotes(std::string_view text) {
    const bool is_quoted =
        text.size() > 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
    return is_quoted ? text.substr(1, text.size() - 2) : std::string_view();
}

// Which of the declarations that share a symbol a file means.
class NamesakeChoice {
  public:
    NamesakeChoice(const Contents& contents, Modules& modules) : contents_(contents), modules_(modules) {
        for (const auto& [path, file] : contents.files) {
            for (const Definition& definition : file.definitions) {
                files_[definition.symbol].insert(path);
            }
        }
    }

    // All that the symbol may mean in the file at `path`, added to `meaning`: its own declaration, else those of files
    // that it has names from, else every one.
    void add(std::string_view path, SymbolNumber symbol, Meaning& meaning) {
        const auto namesakes = contents_.namesakes.find(symbol);
        if (namesakes == contents_.namesakes.end()) {
            meaning.push_back(symbol);
            return;
        }
        const std::set<std::string_view>& reached = modules_.reached_from(path);
        for (const bool is_own : {true, false}) {
            const std::size_t before = meaning.size();
            std::ranges::copy_if(namesakes->second, std::back_inserter(meaning), [&](SymbolNumber each) {
                return std::ranges::any_of(files_[each], [&](std::string_view file) {
                    return is_own ? file == path : reached.contains(file);
                });
            });
            if (meaning.size() > before) {
                return;
            }
        }
        meaning.insert(meaning.end(), namesakes->second.begin(), namesakes->second.end());
    }

  private:
    const Contents& contents_;
    Modules& modules_;
    std::unordered_map<SymbolNumber, std::set<std::string_view>> files_;  // that declare a symbol
};

class TokenSettler {
  public:
    TokenSettler(Contents& contents, const sources::Sources& sources, const UndeclaredByFile& undeclared,
                 const std::optional<Checkout>& checkout, ImportReport& report)
        : contents_(contents), sources_(sources), undeclared_(undeclared), checkout_(checkout), report_(report),
          modules_(contents, sources) {
        for (SymbolNumber symbol = 0; symbol < contents.symbols.size(); ++symbol) {
            if (const std::string_view text = contents.symbols.symbol(symbol); is_built_in(text)) {
                built_in_.emplace(symbol, parse_symbol(text).value().descriptors.back().name);
            }
        }
    }

    void settle() {
        for (auto& [path, file] : contents_.files) {
            settle_open(path, file);
            if (!file.names_seen.empty()) {
                add_unseen(path, file);
                move_built_in(path, file);
                file.names_seen.clear();
            }
        }
        if (!contents_.namesakes.empty()) {
            NamesakeChoice choice(contents_, modules_);
            for (auto& [path, file] : contents_.files) {
                choose(path, file, choice);
            }
        }
    }

  private:
    void settle_open(const std::string& path, FileContents& file) {
        if (file.open_tokens.empty()) {
            return;
        }
        constexpr std::size_t LARGEST = sources::LARGEST_SOURCE;
        std::optional<FileContent> read = checkout_ ? checkout_->read(path, LARGEST) : std::nullopt;
        RangedText text(read && read->text ? std::move(*read->text) : std::string());
        const sources::Outline* const outline = outline_of(path);
        Meaning before;  // of the token before
        for (const OpenToken& token : std::exchange(file.open_tokens, {})) {
            if (outline != nullptr && outline->is_in_test(token.range.start_line + 1)) {
                ++report_.references_in_test_code;
                continue;
            }
            before = meaning(path, token, before, text);
            if (!before.empty()) {
                count(file, before, 1);
            } else if (token.names != LOCAL_SYMBOL) {
                ++report_.misnamed_references;
            }
        }
    }

    // What a token names, by its text where that is another name than its document says.
    Meaning meaning(std::string_view path, const OpenToken& token, const Meaning& before, RangedText& text) {
        const std::string name(text.at(token.range));
        const Meaning by_source = name.empty() ? Meaning() : meaning_of(path, token, before, name, text);
        if (!by_source.empty() || token.names == LOCAL_SYMBOL) {
            return by_source;
        }
        Meaning stated;
        for (const SymbolNumber symbol : contents_.tokens.symbols(token.names)) {
            if (symbol != LOCAL_SYMBOL && (name.empty() || may_mean(path, name, contents_.symbols.symbol(symbol)))) {
                stated.push_back(symbol);
            }
        }
        return stated;
    }

    // What the imports of the file say that a name means, alone or behind a dot.
    Meaning meaning_of(std::string_view path, const OpenToken& token, const Meaning& before, const std::string& name,
                       RangedText& text) {
        const std::string_view quoted = without_quotes(name);
        const std::string module(quoted.empty() ? name : quoted);
        if (std::ranges::find(modules_.links_of(path), module, &Link::module) != modules_.links_of(path).end() ||
            !quoted.empty()) {
            const auto file = modules_.file_of(path, module);
            return file ? Meaning{modules_.module_at(*file).value()} : Meaning();
        }
        if (!is_behind_dot(token, text)) {
            return is_key(token, text) ? Meaning() : modules_.imported(path, name);
        }
        if (!token.receiver || trimmed(text.at(between(*token.receiver, token))) != ".") {
            return {};
        }
        const bool is_module = token.receiver->module || before.size() == 1;
        return is_module ? modules_.exported(token.receiver->module.value_or(before.front()), name) : Meaning();
    }

    static Range between(const Receiver& receiver, const OpenToken& token) {
        return {receiver.range.end_line, receiver.range.end_column, token.range.start_line, token.range.start_column};
    }

    static bool is_behind_dot(const OpenToken& token, RangedText& text) {
        const auto [line, column, _, __] = token.range;
        return column > 0 && text.at({line, column - 1, line, column}) == ".";
    }

    // Whether the token may be the name of an argument or of a property: `f(a=b)`, `{ a: b }`, `<A a={b}>`.
    static bool is_key(const OpenToken& token, RangedText& text) {
        const std::string_view rest = trimmed(text.behind(token.range));
        return rest.starts_with(':') || (rest.starts_with('=') && !rest.starts_with("==") && !rest.starts_with("=>"));
    }

    // Whether a name of the file may stand for the symbol: as its own name, or as another one that an import gives it.
    bool may_mean(std::string_view path, std::string_view name, std::string_view symbol) {
        return may_name(name, symbol) || std::ranges::any_of(modules_.links_of(path), [&](const Link& link) {
                   return link.name == name && may_name(link.original.empty() ? link.module : link.original, symbol);
               });
    }

    // Counts what the source has by import and no token names.
    void add_unseen(std::string_view path, FileContents& file) {
        for (const Link& link : modules_.links_of(path)) {
            const Meaning meaning = modules_.followed(path, link);
            add_module(path, link, meaning, file);
            if (link.name.empty() || meaning.empty()) {
                continue;
            }
            const bool is_seen = file.has_seen(link.name);
            if (!is_seen && !file.has_seen(link.original + " as " + link.name)) {
                count(file, meaning, 1);  // where it is imported
            }
            for (const auto& [members, mentions] : link.mentions) {
                if (!is_seen) {
                    count(file, meaning, mentions);
                }
                add_members(link.name, meaning, members, mentions, file);
            }
        }
    }

    // Gives to the file's own names what its document takes for names of the language: a class `Warning` hides the one
    // that Python has.
    void move_built_in(std::string_view path, FileContents& file) {
        std::vector<std::pair<Meaning, std::int64_t>> moved;
        std::erase_if(file.references, [&](const auto& reference) {
            const auto name = built_in_.find(reference.first);
            Meaning meaning = name == built_in_.end() ? Meaning() : modules_.meant(path, name->second);
            const bool is_hidden = !meaning.empty();
            if (is_hidden) {
                // One of the tokens of what no document defines is where it is declared.
                const std::int64_t declaring = is_declared_here(path, meaning.front()) ? 1 : 0;
                moved.emplace_back(std::move(meaning), reference.second - declaring);
            }
            return is_hidden;
        });
        for (auto& [meaning, references] : moved) {
            count(file, std::move(meaning), references);
        }
    }

    // The file that a link leads to is used, even where nothing else of it is.
    void add_module(std::string_view path, const Link& link, const Meaning& meaning, FileContents& file) {
        const bool is_module = meaning.size() == 1 && modules_.is_module(meaning.front());
        const std::optional<std::string_view> module = is_module ? std::nullopt : modules_.file_of(path, link.module);
        const Meaning used = is_module ? meaning : module ? Meaning{modules_.module_at(*module).value()} : Meaning();
        if (!used.empty() && !file.references.contains(used.front())) {
            count(file, used, 1);
        }
    }

    // What is named behind a module: "base.Model" behind models.
    void add_members(std::string before, Meaning meaning, std::string_view members, std::int64_t mentions,
                     FileContents& file) {
        while (!members.empty() && meaning.size() == 1 && modules_.is_module(meaning.front())) {
            const std::string name(members.substr(0, members.find('.')));
            members.remove_prefix(std::min(name.size() + 1, members.size()));
            meaning = modules_.exported(meaning.front(), name);
            if (!meaning.empty() && !file.has_seen(before + "." + name)) {
                count(file, meaning, mentions);
            }
            before = name;
        }
    }

    [[nodiscard]] bool is_declared_here(std::string_view path, SymbolNumber symbol) const {
        const auto file = undeclared_.find(path);
        return file != undeclared_.end() &&
               std::ranges::find(file->second, symbol, &Undeclared::symbol) != file->second.end();
    }

    void choose(std::string_view path, FileContents& file, NamesakeChoice& choice) {
        std::vector<std::pair<Meaning, std::int64_t>> changed;
        std::erase_if(file.references, [&](const auto& reference) {
            const std::span<const SymbolNumber> symbols = contents_.tokens.symbols(reference.first);
            const bool is_open =
                std::ranges::any_of(symbols, [&](SymbolNumber symbol) { return contents_.namesakes.contains(symbol); });
            if (is_open) {
                Meaning meaning;
                for (const SymbolNumber symbol : symbols) {
                    choice.add(path, symbol, meaning);
                }
                changed.emplace_back(std::move(meaning), reference.second);
            }
            return is_open;
        });
        for (auto& [meaning, references] : changed) {
            count(file, std::move(meaning), references);
        }
    }

    void count(FileContents& file, Meaning meaning, std::int64_t references) {
        std::ranges::sort(meaning);
        meaning.erase(std::unique(meaning.begin(), meaning.end()), meaning.end());
        file.references[contents_.tokens.number(meaning, contents_.symbols)] += references;
    }

    // Null for a file without one.
    [[nodiscard]] const sources::Outline* outline_of(const std::string& path) const {
        const auto source = sources_.find(path);
        return source != sources_.end() && source->second.outline ? &*source->second.outline : nullptr;
    }

    Contents& contents_;
    const sources::Sources& sources_;
    const UndeclaredByFile& undeclared_;
    const std::optional<Checkout>& checkout_;
    ImportReport& report_;
    Modules modules_;
    std::unordered_map<SymbolNumber, std::string> built_in_;  // the names of what Python itself declares
};

}  // namespace

void settle_open_tokens(Contents& contents, const sources::Sources& sources, const UndeclaredByFile& undeclared,
                        const std::optional<Checkout>& checkout, ImportReport& report) {
    TokenSettler(contents, sources, undeclared, checkout, report).settle();
}

}  // namespace embedded::scip
