#include "host/scip/namesakes.h"

#include "host/sources/module_places.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using Meaning = std::vector<SymbolNumber>;

class NamesakeChoice {
  public:
    NamesakeChoice(Contents& contents, const sources::Sources& sources) : contents_(contents), sources_(sources) {
        for (const auto& [path, file] : contents.files) {
            for (const Definition& definition : file.definitions) {
                files_[definition.symbol].insert(path);
            }
        }
    }

    void choose(std::string_view path, FileContents& file) {
        std::unordered_map<TokenNames, TokenNames> chosen;
        for (const auto& [names, tokens] : file.references) {
            const std::span<const SymbolNumber> symbols = contents_.tokens.symbols(names);
            if (std::ranges::any_of(symbols, [&](SymbolNumber each) { return contents_.namesakes.contains(each); })) {
                chosen.emplace(names, choice(path, symbols));
            }
        }
        std::unordered_map<TokenNames, indexing::Occurrences> references;
        for (const auto& [names, tokens] : file.references) {
            const auto found = chosen.find(names);
            references[found == chosen.end() ? names : found->second].add(tokens);
        }
        file.references = std::move(references);
        if (file.tokens) {
            for (indexing::NamedToken& token : *file.tokens) {
                const auto found = chosen.find(token.names);
                token.names = found == chosen.end() ? token.names : found->second;
            }
        }
    }

  private:
    // What a token of the file at `path` names that states these symbols.
    TokenNames choice(std::string_view path, std::span<const SymbolNumber> stated) {
        Meaning meaning;
        for (const SymbolNumber symbol : stated) {
            add(path, symbol, meaning);
        }
        std::ranges::sort(meaning);
        meaning.erase(std::unique(meaning.begin(), meaning.end()), meaning.end());
        return contents_.tokens.number(meaning, contents_.symbols);
    }

    // Adds all that the symbol may mean in the file at `path`.
    void add(std::string_view path, SymbolNumber symbol, Meaning& meaning) {
        const auto namesakes = contents_.namesakes.find(symbol);
        if (namesakes == contents_.namesakes.end()) {
            meaning.push_back(symbol);
            return;
        }
        const std::set<std::string_view>& reached = reached_from(path);
        const auto add_if = [&](const auto& is_meant) {
            const std::size_t before = meaning.size();
            std::ranges::copy_if(namesakes->second, std::back_inserter(meaning),
                                 [&](SymbolNumber each) { return std::ranges::any_of(files_[each], is_meant); });
            return meaning.size() > before;
        };
        if (!add_if([&](std::string_view file) { return file == path; }) &&
            !add_if([&](std::string_view file) { return reached.contains(file); })) {
            add_if([](std::string_view) { return true; });
        }
    }

    // The files that the one at `path` imports from, and those from which these re-export.
    const std::set<std::string_view>& reached_from(std::string_view path) {
        const auto [known, is_new] = reached_.try_emplace(path);
        std::set<std::string_view>& reached = known->second;
        std::vector<std::string_view> open(is_new ? 1 : 0, path);
        while (!open.empty()) {
            const std::string_view from = open.back();
            open.pop_back();
            const auto source = sources_.find(std::string(from));
            if (source == sources_.end() || !source->second.outline || !source->second.outline->syntax) {
                continue;
            }
            const syntax::Syntax& syntax = *source->second.outline->syntax;
            for (const syntax::Import& import : syntax.imports) {
                const bool counts = from == path || import.is_exported;
                const std::optional<std::string_view> file =
                    counts ? file_of(from, syntax.name(import.module)) : std::nullopt;
                if (file && reached.insert(*file).second) {
                    open.push_back(*file);
                }
            }
        }
        return reached;
    }

    // The file of the module that the one at `path` imports by this name.
    [[nodiscard]] std::optional<std::string_view> file_of(std::string_view path, std::string_view module) const {
        for (const std::string& place : sources::places_of_module(path, module)) {
            if (const auto found = contents_.files.find(place); found != contents_.files.end()) {
                return found->first;
            }
        }
        return std::nullopt;
    }

    Contents& contents_;
    const sources::Sources& sources_;
    std::map<std::string_view, std::set<std::string_view>> reached_;      // by path
    std::unordered_map<SymbolNumber, std::set<std::string_view>> files_;  // that declare a symbol
};

}  // namespace

void choose_namesakes(Contents& contents, const sources::Sources& sources) {
    if (contents.namesakes.empty()) {
        return;
    }
    NamesakeChoice choice(contents, sources);
    for (auto& [path, file] : contents.files) {
        choice.choose(path, file);
    }
}

}  // namespace host::scip
