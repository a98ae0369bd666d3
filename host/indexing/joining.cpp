#include "host/indexing/joining.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace host::indexing {

namespace {

// The symbols of both, those of the sources behind those of the documents.
class JoinedSymbols : public Symbols {
  public:
    /// Where a file is in each; of one without documents, only the place in the sources is asked for.
    struct Places {
        std::uint32_t in_documents = 0;
        std::uint32_t in_sources = 0;
    };

    JoinedSymbols(std::unique_ptr<const Symbols> documents, std::unique_ptr<const Symbols> sources,
                  std::vector<Places> places)
        : documents_(std::move(documents)), sources_(std::move(sources)),
          first_(static_cast<SymbolNumber>(documents_->size())), places_(std::move(places)) {}

    [[nodiscard]] std::size_t size() const override { return first_ + sources_->size(); }

    [[nodiscard]] DeclarationName name_of(SymbolNumber symbol, std::uint32_t file) const override {
        return symbol < first_ ? documents_->name_of(symbol, places_[file].in_documents)
                               : sources_->name_of(symbol - first_, places_[file].in_sources);
    }

    [[nodiscard]] bool is_defined(SymbolNumber symbol) const override {
        return symbol < first_ ? documents_->is_defined(symbol) : sources_->is_defined(symbol - first_);
    }

    [[nodiscard]] std::optional<Elsewhere> declared_elsewhere(SymbolNumber symbol) const override {
        return symbol < first_ ? documents_->declared_elsewhere(symbol) : sources_->declared_elsewhere(symbol - first_);
    }

  private:
    const std::unique_ptr<const Symbols> documents_;
    const std::unique_ptr<const Symbols> sources_;
    const SymbolNumber first_;  // of the sources
    const std::vector<Places> places_;
};

constexpr TokenNames NOTHING = LOCAL_SYMBOL;

using Counts = std::unordered_map<TokenNames, Occurrences>;

class Joining {
  public:
    Joining(Extraction documents, Extraction sources, ImportReport& report)
        : documents_(std::move(documents)), sources_(std::move(sources)), report_(report),
          first_(static_cast<SymbolNumber>(documents_.symbols->size())) {}

    Extraction join() {
        meet();
        std::vector<JoinedSymbols::Places> places;
        for (const auto& [path, of_path] : files_) {
            places.push_back({of_path.in_documents.value_or(0), of_path.in_sources.value_or(0)});
            joined_.files.push_back(of_path.in_documents ? completed(of_path) : renumbered(*of_path.in_sources));
        }
        joined_.tokens = std::move(documents_.tokens);
        joined_.symbols = std::make_unique<JoinedSymbols>(std::move(documents_.symbols), std::move(sources_.symbols),
                                                          std::move(places));
        joined_.languages = std::move(documents_.languages);
        joined_.languages.merge(sources_.languages);
        joined_.damaged = documents_.damaged + sources_.damaged;
        joined_.summaries = std::move(documents_.summaries);
        joined_.summaries.insert(joined_.summaries.end(), sources_.summaries.begin(), sources_.summaries.end());
        return std::move(joined_);
    }

  private:
    struct OfPath {
        std::optional<std::uint32_t> in_documents;
        std::optional<std::uint32_t> in_sources;
    };

    // Finds the files that both have, and what the symbols of the sources mean.
    void meet() {
        for (std::uint32_t file = 0; file < documents_.files.size(); ++file) {
            files_[documents_.files[file].path].in_documents = file;
        }
        for (SymbolNumber symbol = 0; symbol < sources_.symbols->size(); ++symbol) {
            meant_.push_back(first_ + symbol);
        }
        for (std::uint32_t file = 0; file < sources_.files.size(); ++file) {
            OfPath& of_path = files_[sources_.files[file].path];
            of_path.in_sources = file;
            if (of_path.in_documents) {
                meet(documents_.files[*of_path.in_documents].declared, sources_.files[file].declared);
            }
        }
    }

    void meet(FileDeclarations& in_documents, const FileDeclarations& in_sources) {
        for (const NamePlace& name : in_sources.names) {
            std::vector<SymbolNumber> symbols;
            const std::vector<NamePlace>& names = in_documents.names;
            for (auto found = std::ranges::lower_bound(names, name.offset, {}, &NamePlace::offset);
                 found != names.end() && found->offset == name.offset; ++found) {
                symbols.push_back(found->symbol);
            }
            meant_[name.symbol] = symbols.empty() ? NOTHING : documents_.tokens.number(std::move(symbols));
        }
        for (const SymbolNumber module : in_sources.modules) {
            if (in_documents.modules.empty()) {
                in_documents.modules.push_back(first_ + module);
            }
            meant_[module] = in_documents.modules.front();
        }
    }

    // What a token of the sources names, by the numbers of both; none where nothing declares it.
    std::optional<TokenNames> meaning(const TokenNames& names) {
        std::vector<SymbolNumber> symbols;
        for (const SymbolNumber symbol : sources_.tokens.symbols(names)) {
            const TokenNames meant = symbol == LOCAL_SYMBOL ? LOCAL_SYMBOL : meant_[symbol];
            std::ranges::copy(documents_.tokens.symbols(meant), std::back_inserter(symbols));
        }
        std::ranges::sort(symbols);
        symbols.erase(std::unique(symbols.begin(), symbols.end()), symbols.end());
        const bool is_declared = !symbols.empty() && symbols.front() != LOCAL_SYMBOL;
        return is_declared ? std::optional(documents_.tokens.number(std::move(symbols))) : std::nullopt;
    }

    // A file of the documents, with what its source knows beyond them.
    ExtractedFile completed(const OfPath& of_path) {
        ExtractedFile file = std::move(documents_.files[*of_path.in_documents]);
        if (file.tokens && of_path.in_sources) {
            complete(sources_.files[*of_path.in_sources], file);
        }
        report_.misnamed_references += static_cast<std::int64_t>(file.misnamed.size());
        return file;
    }

    void complete(const ExtractedFile& source, ExtractedFile& file) {
        std::unordered_set<std::uint32_t> completed;  // offsets
        auto known = file.tokens->begin();
        for (const NamedToken& token : *source.tokens) {
            known = std::lower_bound(known, file.tokens->end(), token.offset,
                                     [](const NamedToken& each, std::uint32_t offset) { return each.offset < offset; });
            const bool is_known = known != file.tokens->end() && known->offset == token.offset;
            const std::optional<TokenNames> meaning =
                is_known && !leads_nowhere(known->names) ? std::nullopt : this->meaning(token.names);
            if (!meaning) {
                continue;
            }
            if (is_known) {
                remove(known->names, file.references);
            }
            file.references[*meaning].add({1, token.line});
            completed.insert(token.offset);
        }
        if (!file.declared.modules.empty() && file.declared.modules.front() < first_) {
            add_imports(source, file);
        }
        std::erase_if(file.misnamed, [&](std::uint32_t offset) { return completed.contains(offset); });
    }

    // What a module imports is used, even where nothing else of it is.
    void add_imports(const ExtractedFile& source, ExtractedFile& file) {
        for (const auto& [module, tokens] : source.references) {
            if (const std::optional<TokenNames> meaning = this->meaning(module)) {
                file.references.try_emplace(*meaning, tokens);
            }
        }
    }

    // Whether documents name what none of them defines.
    [[nodiscard]] bool leads_nowhere(const TokenNames& names) const {
        return std::ranges::none_of(documents_.tokens.symbols(names), [&](SymbolNumber symbol) {
            return symbol == LOCAL_SYMBOL || documents_.symbols->is_defined(symbol);
        });
    }

    // No declaration is named by these, so no row has a line of theirs.
    static void remove(const TokenNames& names, Counts& references) {
        const auto found = references.find(names);
        if (found != references.end() && --found->second.count == 0) {
            references.erase(found);
        }
    }

    // A file of the sources alone, with the numbers of both.
    ExtractedFile renumbered(std::uint32_t at) {
        ExtractedFile file = std::move(sources_.files[at]);
        for (Declaration& declaration : file.declared.declarations) {
            declaration.symbol += first_;
        }
        for (DeclaredSymbol& declared : file.declared.symbols) {
            declared.symbol += first_;
        }
        for (SymbolNumber& module : file.declared.modules) {
            module += first_;
        }
        renumber(file.references, file.language, [&](const TokenNames& names) { return meaning(names); });
        renumber(file.unique_references, file.language, [&](SymbolNumber symbol) {
            return meant_[symbol] == NOTHING ? std::nullopt
                                             : std::optional(documents_.tokens.symbols(meant_[symbol]).front());
        });
        return file;
    }

    void renumber(Counts& references, const std::string& language, const auto& meaning) {
        for (const auto& [names, tokens] : std::exchange(references, {})) {
            if (const std::optional<TokenNames> meant = meaning(names)) {
                references[*meant].add(tokens);
            } else {
                report_.unresolved_by_language[language] += tokens.count;
            }
        }
    }

    Extraction documents_;
    Extraction sources_;
    ImportReport& report_;
    const SymbolNumber first_;             // of the sources, behind those of the documents
    std::map<std::string, OfPath> files_;  // by path
    std::vector<TokenNames> meant_;        // by symbol of the sources: what it is by the numbers of both, or `NOTHING`
    Extraction joined_;
};

}  // namespace

Extraction joined(Extraction documents, Extraction sources, ImportReport& report) {
    return Joining(std::move(documents), std::move(sources), report).join();
}

}  // namespace host::indexing
