#include "host/scip/undeclared.h"

#include "host/scip/built_in_names.h"
#include "host/scip/lines_of_range.h"
#include "host/scip/project_root.h"
#include "host/scip/symbol.h"
#include "host/scip/token_text.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace host::scip {

namespace {

using sources::Outline;
using sources::Position;
using sources::SourceDeclaration;

Suffix suffix_of(const SourceDeclaration& declaration) {
    if (declaration.kind == "function") {
        return Suffix::METHOD;
    }
    return declaration.is_variable || declaration.kind == "constant" ? Suffix::TERM : Suffix::TYPE;
}

// The symbol of a file as a module, if its documents define that.
std::optional<SymbolNumber> module_at(std::string_view path, const FileContents& file, const SymbolTable& symbols) {
    for (const Definition& definition : file.definitions) {
        const bool may_be_it = symbols.is_module(definition.symbol);
        if (may_be_it && is_module_of(parse_symbol(symbols.symbol(definition.symbol)).value().descriptors, path)) {
            return definition.symbol;
        }
    }
    return std::nullopt;
}

// What the documents of a file define.
class DefinedNames {
  public:
    DefinedNames(const FileContents& file, const SymbolTable& symbols) {
        for (const Definition& definition : file.definitions) {
            const Symbol symbol = parse_symbol(symbols.symbol(definition.symbol)).value();
            names_[symbol.scope].insert(written(symbol.descriptors.back().name));
            if (definition.name) {
                places_.insert(*definition.name);
            }
        }
    }

    // Whether the declaration is none of them, by its place, nor by its name in the scope; from then on it is one. The
    // text of the scope must live as long as this object.
    bool add(std::string_view scope, const SourceDeclaration& declaration) {
        return !places_.contains(declaration.position) && names_[scope].insert(declaration.name).second;
    }

  private:
    std::set<Position> places_;
    std::map<std::string_view, std::set<std::string>> names_;  // by scope
};

// Adds definitions to one file.
class UndeclaredInFile {
  public:
    UndeclaredInFile(const Outline& outline, const std::string& scope, const std::set<std::string>& built_in,
                     FileContents& file, SymbolTable& symbols)
        : outline_(outline), scope_(scope), built_in_(built_in), file_(file), symbols_(symbols),
          defined_(file, symbols) {}

    std::vector<Undeclared> add() {
        for (const SourceDeclaration& each : outline_.declarations) {
            while (!classes_.empty() && classes_.back()->last_line < each.first_line) {
                classes_.pop_back();
            }
            if (each.kind == "class") {
                classes_.push_back(&each);
            }
            if (each.kind == "attribute") {
                add_attribute(each);
            } else if (each.is_at_top && (each.is_variable || !each.kind.empty()) && defined_.add(scope_, each)) {
                declare(each, scope_ + spelled({each.name, suffix_of(each)}));
            }
        }
        return std::move(undeclared_);
    }

  private:
    // Of attributes only those whose tokens name something else.
    void add_attribute(const SourceDeclaration& attribute) {
        const bool is_of_class = !classes_.empty() && classes_.back()->is_at_top;
        if (is_of_class && (outline_.slots.contains(attribute.name) || built_in_.contains(attribute.name))) {
            const std::string& type = types_.emplace_back(scope_ + spelled({classes_.back()->name, Suffix::TYPE}));
            if (defined_.add(type, attribute)) {
                declare(attribute, type + spelled({attribute.name, Suffix::TERM}));
            }
        }
    }

    void declare(const SourceDeclaration& declaration, const std::string& text) {
        const SymbolNumber symbol = symbols_.number(text).value();
        file_.definitions.push_back({.symbol = symbol,
                                     .lines = {declaration.first_line, declaration.last_line},
                                     .is_whole = true,
                                     .is_forward = false,
                                     .name = declaration.position,
                                     .offset = declaration.offset});
        undeclared_.push_back({declaration.position, symbol});
    }

    const Outline& outline_;
    const std::string& scope_;
    const std::set<std::string>& built_in_;
    FileContents& file_;
    SymbolTable& symbols_;
    DefinedNames defined_;
    std::vector<const SourceDeclaration*> classes_;  // around the current declaration, from the outside in
    std::deque<std::string> types_;                  // the symbols of classes
    std::vector<Undeclared> undeclared_;
};

// The tokens of a document that name one of several locals.
class LocalReferences {
  public:
    LocalReferences(const Document& document, std::span<const Undeclared> undeclared, RangedText& text) {
        std::map<std::string_view, const Undeclared*> locals;
        std::map<Position, const Undeclared*> by_place;
        for (const Undeclared& each : undeclared) {
            by_place.emplace(each.name, &each);
        }
        for_each_local(document, [&](const Occurrence& occurrence) {
            const Position place{lines_of(*occurrence.range).first, occurrence.range->start_column};
            if (const auto found = by_place.find(place); occurrence.is_definition() && found != by_place.end()) {
                locals.emplace(occurrence.symbol, found->second);
                names_.emplace(occurrence.symbol, text.at(*occurrence.range));
            }
        });
        std::set<Range> seen;
        for_each_local(document, [&](const Occurrence& occurrence) {
            const auto local = locals.find(occurrence.symbol);
            // A local of another file, which this one imports, may have the same number.
            if (local != locals.end() && !occurrence.is_definition() && seen.insert(*occurrence.range).second &&
                text.at(*occurrence.range) == names_.at(occurrence.symbol)) {
                found_[local->second->symbol].add({1, lines_of(*occurrence.range).first});
            }
        });
    }

    [[nodiscard]] const std::map<SymbolNumber, indexing::Occurrences>& found() const { return found_; }

  private:
    static void for_each_local(const Document& document, const auto& visit) {
        Repeated<Occurrence> occurrences = document.occurrences();
        while (const std::optional<Occurrence> occurrence = occurrences.next()) {
            if (occurrence->range && is_local(occurrence->symbol)) {
                visit(*occurrence);
            }
        }
    }

    std::map<std::string_view, std::string_view> names_;
    std::map<SymbolNumber, indexing::Occurrences> found_;
};

}  // namespace

UndeclaredByFile add_undeclared(Contents& contents, const sources::Sources& sources) {
    std::set<std::string> built_in;
    for (const auto& [symbol, name] : built_in_names(contents.symbols)) {
        built_in.insert(name);
    }
    UndeclaredByFile undeclared;
    for (auto& [path, file] : contents.files) {
        const auto source = sources.find(path);
        const std::optional<SymbolNumber> module = module_at(path, file, contents.symbols);
        if (!module || source == sources.end() || !source->second.outline || source->second.outline->is_damaged) {
            continue;
        }
        const std::string scope(scope_of_module(contents.symbols.symbol(*module)));
        UndeclaredInFile in_file(*source->second.outline, scope, built_in, file, contents.symbols);
        if (std::vector<Undeclared> found = in_file.add(); !found.empty()) {
            undeclared.emplace(path, std::move(found));
        }
    }
    return undeclared;
}

void count_locals(std::span<const PlacedScipFile> files, const UndeclaredByFile& undeclared, const Checkout& checkout,
                  Contents& contents) {
    if (undeclared.empty()) {
        return;
    }
    for (const PlacedScipFile& placed : files) {
        placed.file->for_each_document([&](const Document& document) {
            const std::optional<std::string> path = path_in_repository(placed.folder, document.heading().path);
            const auto found = path ? undeclared.find(*path) : undeclared.end();
            const std::optional<FileContent> read =
                found == undeclared.end() ? std::nullopt : checkout.read(*path, sources::LARGEST_SOURCE);
            if (!read || !read->text) {
                return;
            }
            RangedText text(*read->text);
            const LocalReferences references(document, found->second, text);
            for (const auto& [symbol, tokens] : references.found()) {
                contents.files.at(*path).references[symbol].add(tokens);
            }
        });
    }
}

}  // namespace host::scip
