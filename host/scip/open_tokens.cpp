#include "host/scip/open_tokens.h"

#include "host/scip/token_text.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace host::scip {

namespace {

using indexing::Meaning;
using sources::Link;

// "'./m'" -> "./m"; empty for a text without quotes
std::string_view without_quotes(std::string_view text) {
    const bool is_quoted =
        text.size() > 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
    return is_quoted ? text.substr(1, text.size() - 2) : std::string_view();
}

class TokenSettler {
  public:
    TokenSettler(Contents& contents, const sources::Sources& sources, indexing::Modules& modules,
                 const std::optional<Checkout>& checkout, indexing::ImportReport& report)
        : contents_(contents), sources_(sources), modules_(modules), checkout_(checkout), report_(report) {}

    void settle() {
        for (auto& [path, file] : contents_.files) {
            if (!file.open_tokens.empty()) {
                settle(path, file);
            }
        }
    }

  private:
    void settle(const std::string& path, FileContents& file) {
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
                contents_.add_references(file, before, 1);
                if (file.tokens_seen) {
                    file.tokens_seen->add(text.with_name_before(text.at(token.range)));
                }
            } else if (token.names != LOCAL_SYMBOL) {
                ++report_.misnamed_references;
            }
        }
    }

    // What a token names, by its text where that is another name than its document says.
    Meaning meaning(std::string_view path, const OpenToken& token, const Meaning& before, RangedText& text) {
        const std::string name(text.at(token.range));
        Meaning by_source = name.empty() ? Meaning() : meaning_of(path, token, before, name, text);
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
            const bool is_counted_by_scope =
                token.names == LOCAL_SYMBOL && indexing::is_python(path);  // unseen_names.h
            return is_counted_by_scope || is_key(token, text) ? Meaning() : modules_.imported(path, name);
        }
        if (!token.receiver || trimmed(text.at(between(*token.receiver, token))) != ".") {
            return {};
        }
        if (token.receiver->module) {
            return modules_.exported(*token.receiver->module, name);
        }
        return before.size() == 1 ? modules_.exported(before.front(), name) : Meaning();
    }

    static Range between(const Receiver& receiver, const OpenToken& token) {
        return {receiver.range.end_line, receiver.range.end_column, token.range.start_line, token.range.start_column};
    }

    static bool is_behind_dot(const OpenToken& token, RangedText& text) {
        const std::int32_t line = token.range.start_line;
        const std::int32_t column = token.range.start_column;
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

    // Null for a file without one.
    [[nodiscard]] const sources::Outline* outline_of(const std::string& path) const {
        const auto source = sources_.find(path);
        return source != sources_.end() && source->second.outline ? &*source->second.outline : nullptr;
    }

    Contents& contents_;
    const sources::Sources& sources_;
    indexing::Modules& modules_;
    const std::optional<Checkout>& checkout_;
    indexing::ImportReport& report_;
};

}  // namespace

void settle_open_tokens(Contents& contents, const sources::Sources& sources, indexing::Modules& modules,
                        const std::optional<Checkout>& checkout, indexing::ImportReport& report) {
    TokenSettler(contents, sources, modules, checkout, report).settle();
}

}  // namespace host::scip
