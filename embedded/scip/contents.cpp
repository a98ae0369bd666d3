#include "embedded/scip/contents.h"

#include "embedded/scip/project_root.h"
#include "embedded/scip/symbol.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace embedded::scip {

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

    Contents finish() { return std::move(contents_); }

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
        add_occurrences(document.occurrences(), file);
        add_descriptions(document.symbols(), file);
    }

    std::optional<SymbolNumber> number_of(std::string_view symbol) {
        return folder_.empty() ? contents_.symbols.number(symbol)
                               : contents_.symbols.number(of_project(symbol, folder_));
    }

    void add_descriptions(Repeated<SymbolInformation> descriptions, FileContents& file) {
        while (const std::optional<SymbolInformation> information = descriptions.next()) {
            const std::optional<SymbolNumber> symbol = number_of(information->symbol);
            if (symbol && *symbol != LOCAL_SYMBOL) {
                file.descriptions[*symbol].add(*information, spool_);
            }
        }
    }

    void add_occurrences(Repeated<Occurrence> occurrences, FileContents& file) {
        parts_.clear();
        defined_locals_.clear();
        while (const std::optional<Occurrence> occurrence = occurrences.next()) {
            if (const std::optional<SymbolNumber> symbol = number_of(occurrence->symbol)) {
                add_occurrence(*occurrence, *symbol, file);
            }
        }
        if (!std::ranges::is_sorted(parts_, {}, &Part::range)) {  // most are
            std::ranges::stable_sort(parts_, {}, &Part::range);
        }
        for (auto begin = parts_.begin(); begin != parts_.end();) {
            const auto end =
                std::find_if(begin, parts_.end(), [&](const Part& part) { return part.range != begin->range; });
            add_token(std::span(begin, end), file);
            begin = end;
        }
        before_ = std::nullopt;
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
            ++file.references[symbol];  // nobody can tell that it is not a token of its own
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
        }
        file.last_line = std::max(file.last_line, definition.lines.last);
        file.definitions.push_back(definition);
    }

    // Puts what a token names into `symbols_`. A local that the document nowhere defines is no part of it beside a
    // global symbol: scip-typescript adds one to each token that names Button where anything says `Button.x = ...`.
    void read_symbols(std::span<const Part> token) {
        const bool names_a_global = std::ranges::any_of(token, [](const Part& part) { return !part.is_local(); });
        symbols_.clear();
        for (const Part& part : token) {
            if (!part.is_local() || !names_a_global || defined_locals_.contains(part.text)) {
                symbols_.push_back(part.symbol);
            }
        }
        std::ranges::sort(symbols_);
        symbols_.erase(std::unique(symbols_.begin(), symbols_.end()), symbols_.end());
    }

    void add_token(std::span<const Part> token, FileContents& file) {
        read_symbols(token);
        const TokenNames names = contents_.tokens.number(symbols_, contents_.symbols);
        const bool is_reference = std::ranges::none_of(token, &Part::defines);
        if (is_reference && names != LOCAL_SYMBOL) {
            ++file.references[names];
        }
        const Range& range = token.front().range;
        if (is_reference && names == LOCAL_SYMBOL && before_ && may_follow_by_a_dot(before_->range, range)) {
            file.members.push_back({before_->names, before_->range, range});
            before_ = Before{std::nullopt, range};
        } else if (symbols_.size() == 1 && names != LOCAL_SYMBOL && contents_.symbols.is_namespace(names)) {
            before_ = Before{names, range};
        } else {
            before_ = std::nullopt;
        }
    }

    // Whether nothing but a dot may stand between two tokens, and blanks where they stand on several lines.
    static bool may_follow_by_a_dot(const Range& before, const Range& range) {
        return before.end_line < range.start_line ||
               (before.end_line == range.start_line && before.end_column == range.start_column - 1);
    }

    // A token of which the next one may be a member.
    struct Before {
        std::optional<SymbolNumber> names;  // the namespace; none where it is a member itself
        Range range;
    };

    TextSpool& spool_;
    const ContentsListener& listener_;
    Contents contents_;
    std::string folder_;                                   // of the current SCIP file's project
    std::vector<Part> parts_;                              // of the current document
    std::unordered_set<std::string_view> defined_locals_;  // by the current document
    std::vector<SymbolNumber> symbols_;                    // of the current token
    std::optional<Before> before_;
};

}  // namespace

Contents read_contents(std::span<const PlacedScipFile> files, TextSpool& spool, const ContentsListener& listener) {
    ContentsReader reader(spool, listener);
    for (const PlacedScipFile& file : files) {
        reader.read(file);
    }
    return reader.finish();
}

}  // namespace embedded::scip
