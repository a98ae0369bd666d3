#include "host/scip/contents.h"

#include "host/scip/language.h"
#include "host/scip/lines_of_range.h"
#include "host/scip/project_root.h"
#include "host/scip/symbol.h"
#include "host/scip/token_text.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace host::scip {

namespace {

// An occurrence of a symbol as a part of a token.
struct Part {
    Range range;
    SymbolNumber symbol;
    std::string_view text;  // of the symbol
    bool defines;           // here, or only announces what is defined elsewhere

    [[nodiscard]] bool is_local() const { return symbol == LOCAL_SYMBOL; }
};

// Whether a document defines something, and says of all that it is generated.
bool is_generated(const Document& document) {
    bool defines = false;
    Repeated<Occurrence> occurrences = document.occurrences();
    while (const std::optional<Occurrence> occurrence = occurrences.next()) {
        if (occurrence->is_definition() && !occurrence->is_generated()) {
            return false;
        }
        defines = defines || occurrence->is_definition();
    }
    return defines;
}

class ContentsReader {
  public:
    ContentsReader(TextSpool& spool, const ContentsListener& listener) : spool_(spool), listener_(listener) {}

    void read(const PlacedScipFile& placed) {
        folder_ = placed.folder;
        placed.file->for_each_document([&](const Document& document) {
            add(document);
            listener_.after_document();
        });
    }

    Contents finish() {
        for (const auto& [path, file] : contents_.files) {
            for (const Definition& definition : file.definitions) {
                if (contents_.namesakes.contains(definition.symbol)) {
                    add_namesake(definition.symbol, definition.symbol);
                }
            }
        }
        return std::move(contents_);
    }

  private:
    void add(const Document& document) {
        const Heading heading = document.heading();
        const std::optional<std::string> path = path_in_repository(folder_, heading.path);
        if (!path) {
            ++contents_.unusable_documents;
            return;
        }
        if (!listener_.wants(*path, is_generated(document))) {
            ++contents_.unwanted_documents;
            contents_.unwanted.insert(*path);
            return;
        }
        const auto [entry, is_new] = contents_.files.try_emplace(*path);
        FileContents& file = entry->second;
        if (is_new) {
            listener_.new_file(entry->first, std::string(heading.language));
        }
        ++file.documents;
        if (file.language.empty()) {
            file.language = heading.language;
        }
        path_ = *path;
        text_ = read_text(language_of(heading.language, *path));
        add_occurrences(document.occurrences(), file);
        add_descriptions(document.symbols(), file);
    }

    // The text of the current document, where its language decides by it what tokens name.
    std::optional<RangedText> read_text(std::string_view language) {
        is_python_ = language == "python";
        is_rust_ = language == "rust";
        std::optional<std::string> text = listener_.text_of(path_);
        return text ? std::optional<RangedText>(std::in_place, std::move(*text)) : std::nullopt;
    }

    // The line from which on the text may hold code that is compiled for tests alone, 0-based.
    [[nodiscard]] std::int32_t first_line_of_tests() const {
        const std::string& text = text_->text();
        const std::size_t test =
            std::min(text.find("(test"), text.find("#[test]"));  // `#[cfg(test)]`, `cfg(all(test, ...`
        return test == std::string::npos ? std::numeric_limits<std::int32_t>::max()
                                         : static_cast<std::int32_t>(std::count(
                                               text.begin(), text.begin() + static_cast<std::ptrdiff_t>(test), '\n'));
    }

    // Whether the text is the one that was indexed: functions and types stand where their names do.
    bool is_text_of_document() {
        return std::ranges::none_of(parts_, [&](const Part& part) {
            const bool is_certain = part.defines && (part.text.ends_with('#') || part.text.ends_with(")."));
            return is_certain && !may_name(text_->at(part.range), part.text);
        });
    }

    std::optional<SymbolNumber> number_of(std::string_view symbol) {
        return folder_.empty() ? contents_.symbols.number(symbol)
                               : contents_.symbols.number(of_project(symbol, folder_));
    }

    // The number of a symbol that the document declares. Where its package has no name, it is that of the project in
    // the folder that the document's path leaves: many projects have a `src/index.ts`.
    std::optional<SymbolNumber> number_of_declared(std::string_view symbol) {
        const std::optional<SymbolNumber> stated = number_of(symbol);
        const std::optional<std::string> file = file_of_nameless_package(symbol);
        if (!stated || !file || !path_.ends_with(*file)) {
            return stated;
        }
        std::string_view folder = std::string_view(path_).substr(0, path_.size() - file->size());
        if (!folder.empty() && !folder.ends_with('/')) {
            return stated;
        }
        folder.remove_suffix(folder.empty() ? 0 : 1);
        const std::optional<SymbolNumber> own = contents_.symbols.number(of_project(symbol, folder));
        if (own != stated) {
            add_namesake(*stated, *own);
        }
        return own;
    }

    void add_namesake(SymbolNumber stated, SymbolNumber own) {
        std::vector<SymbolNumber>& known = contents_.namesakes[stated];
        if (std::ranges::find(known, own) == known.end()) {
            known.push_back(own);
        }
    }

    void add_descriptions(Repeated<SymbolInformation> descriptions, FileContents& file) {
        while (const std::optional<SymbolInformation> information = descriptions.next()) {
            const std::optional<SymbolNumber> symbol = number_of_declared(information->symbol);
            if (symbol && *symbol != LOCAL_SYMBOL) {
                file.descriptions[*symbol].add(*information, spool_);
            }
        }
    }

    void add_occurrences(Repeated<Occurrence> occurrences, FileContents& file) {
        parts_.clear();
        defined_locals_.clear();
        while (const std::optional<Occurrence> occurrence = occurrences.next()) {
            const std::optional<SymbolNumber> symbol =
                occurrence->is_definition() ? number_of_declared(occurrence->symbol) : number_of(occurrence->symbol);
            if (symbol) {
                add_occurrence(*occurrence, *symbol, file);
            }
        }
        if (!std::ranges::is_sorted(parts_, {}, &Part::range)) {  // most are
            std::ranges::stable_sort(parts_, {}, &Part::range);
        }
        if (text_ && is_python_ && !is_text_of_document()) {
            text_ = std::nullopt;
        }
        first_test_line_ = text_ && is_rust_ ? first_line_of_tests() : std::numeric_limits<std::int32_t>::max();
        if (text_ && !file.tokens) {
            file.tokens.emplace();
        }
        for (auto begin = parts_.begin(); begin != parts_.end();) {
            const auto end =
                std::find_if(begin, parts_.end(), [&](const Part& part) { return part.range != begin->range; });
            add_token(std::span(begin, end), file);
            begin = end;
        }
    }

    void add_occurrence(const Occurrence& occurrence, SymbolNumber symbol, FileContents& file) {
        const bool defines = occurrence.is_definition() || occurrence.is_forward_definition();
        if (occurrence.range) {
            parts_.push_back({*occurrence.range, symbol, occurrence.symbol, defines});
            file.last_line = std::max(file.last_line, lines_of(*occurrence.range).last);
        }
        if (symbol == LOCAL_SYMBOL) {
            if (defines) {
                defined_locals_.insert(occurrence.symbol);
            }
            return;
        }
        if (defines) {
            add_definition(occurrence, symbol, file);
        } else if (!occurrence.range) {
            file.references[symbol].add({1});  // nobody can tell that it is not a token of its own
        }
    }

    void add_definition(const Occurrence& occurrence, SymbolNumber symbol, FileContents& file) {
        const bool is_whole = occurrence.enclosing_range.has_value();
        if (!is_whole && !occurrence.range) {
            ++contents_.unusable_definitions;
            return;
        }
        Definition definition{.symbol = symbol,
                              .lines = lines_of(is_whole ? *occurrence.enclosing_range : *occurrence.range),
                              .is_whole = is_whole,
                              .is_forward = occurrence.is_forward_definition(),
                              .name = std::nullopt};
        if (occurrence.range) {
            definition.name = {lines_of(*occurrence.range).first, occurrence.range->start_column};
            const bool is_named = text_ && may_name(text_->at(*occurrence.range), occurrence.symbol);
            definition.offset = is_named ? text_->offset_of(*occurrence.range) : std::nullopt;
        }
        file.last_line = std::max(file.last_line, definition.lines.last);
        file.definitions.push_back(definition);
    }

    // Puts what a token names into `symbols_`. A local that the document nowhere defines is no part of it beside a
    // global symbol: scip-typescript adds one to each token that names Button where anything says `Button.x = ...`.
    void read_symbols(std::span<const Part> token) {
        const bool names_a_global = std::ranges::any_of(token, [](const Part& part) { return !part.is_local(); });
        symbols_.clear();
        names_a_local_ = false;
        for (const Part& part : token) {
            const bool is_defined = part.is_local() && defined_locals_.contains(part.text);
            if (!part.is_local() || !names_a_global || is_defined) {
                symbols_.push_back(part.symbol);
            }
            names_a_local_ = names_a_local_ || is_defined;
        }
        std::ranges::sort(symbols_);
        symbols_.erase(std::unique(symbols_.begin(), symbols_.end()), symbols_.end());
    }

    void add_token(std::span<const Part> token, FileContents& file) {
        read_symbols(token);
        const TokenNames names = contents_.tokens.number(symbols_, contents_.symbols);
        const bool is_reference = std::ranges::none_of(token, &Part::defines);
        const Range& range = token.front().range;
        if (is_reference && names != LOCAL_SYMBOL && is_open(range)) {
            file.open_tokens.push_back({names, range});
            return;
        }
        if (is_reference && names != LOCAL_SYMBOL) {
            file.references[names].add({1, lines_of(range).first});
        }
        if (!is_reference || names != LOCAL_SYMBOL || names_a_local_) {
            keep_token(is_reference ? names : LOCAL_SYMBOL, range, file);
        }
    }

    void keep_token(TokenNames names, const Range& range, FileContents& file) {
        if (const auto offset = text_ && file.tokens ? text_->offset_of(range) : std::nullopt) {
            file.tokens->push_back({*offset, names, lines_of(range).first});
        }
    }

    // Whether the source has the last word on what a token names.
    bool is_open(const Range& range) {
        if (!text_ || !is_python_) {
            return range.start_line >= first_test_line_;
        }
        const std::string_view text = text_->at(range);
        return std::ranges::any_of(symbols_, [&](SymbolNumber symbol) {
            return symbol != LOCAL_SYMBOL && !may_name(text, contents_.symbols.symbol(symbol));
        });
    }

    TextSpool& spool_;
    const ContentsListener& listener_;
    Contents contents_;
    std::string folder_;                                   // of the current SCIP file's project
    std::vector<Part> parts_;                              // of the current document
    std::unordered_set<std::string_view> defined_locals_;  // by the current document
    std::vector<SymbolNumber> symbols_;                    // of the current token
    bool names_a_local_ = false;                           // whether that names one which the document defines
    std::string path_;                                     // of the current document
    std::optional<RangedText> text_;                       // of the current document
    bool is_python_ = false;
    bool is_rust_ = false;
    std::int32_t first_test_line_ = 0;  // of a source of Rust
};

}  // namespace

Contents read_contents(std::span<const PlacedScipFile> files, TextSpool& spool, const ContentsListener& listener) {
    ContentsReader reader(spool, listener);
    for (const PlacedScipFile& file : files) {
        reader.read(file);
    }
    return reader.finish();
}

}  // namespace host::scip
