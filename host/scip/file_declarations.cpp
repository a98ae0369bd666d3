#include "host/scip/file_declarations.h"

#include "host/scip/declarations.h"
#include "host/scip/symbol.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace host::scip {

namespace {

using indexing::Declaration;
using sources::Source;
using sources::SourceDeclaration;

// The definition of a symbol that gives the lines, and what the source says there.
struct Best {
    indexing::LineSpan lines;
    std::optional<sources::Position> name;
    std::optional<std::size_t> in_source;  // the place in the outline
};

// A symbol that a file defines, on its way to a declaration.
struct Candidate {
    SymbolNumber symbol;
    Symbol parts;
    Best best;
    SpooledText documentation;  // of the first definition that has one in the source
    Declaration declaration;    // the kind is empty for what declares nothing, but may be one with a declaration
    std::size_t group = 0;      // the place of the first candidate that it is one with
};

// Whether a declaration of another kind that a language has may be public without being in an outline.
bool is_public_by_signature(std::string_view language, const Description& description) {
    if (language == "csharp") {
        return description.signature.empty() || description.is_public;
    }
    return (language != "kotlin" && language != "scala") || !description.is_restricted;
}

// Reads the definitions of one file.
class FileReader {
  public:
    FileReader(const std::string& path, const FileContents& file, const std::string& language, const Contents& contents,
               const DefinitionSites& sites, const CallableTypes& callable_types, const Source* source)
        : path_(path), file_(file), language_(language), contents_(contents), sites_(sites),
          callable_types_(callable_types), source_(source) {}

    ReadDeclarations read() {
        add_candidates();
        merge();
        add_declarations();
        result_.declared.line_count = outline() != nullptr ? outline()->line_count : file_.last_line;
        return std::move(result_);
    }

  private:
    [[nodiscard]] const sources::Outline* outline() const {
        return source_ != nullptr && source_->outline ? &*source_->outline : nullptr;
    }

    [[nodiscard]] const Description& description(SymbolNumber symbol) const {
        static const Description NONE;
        const auto found = file_.descriptions.find(symbol);
        return found == file_.descriptions.end() ? NONE : found->second;
    }

    void add_candidates() {
        std::unordered_map<SymbolNumber, std::size_t> places;
        for (const Definition& definition : file_.definitions) {
            if (!sites_.counts(definition, file_)) {
                continue;
            }
            const auto [place, is_new] = places.try_emplace(definition.symbol, candidates_.size());
            if (is_new) {
                Symbol parts = parse_symbol(contents_.symbols.symbol(definition.symbol)).value();
                candidates_.push_back({definition.symbol, std::move(parts), {}, {}, {}, place->second});
            }
            Candidate& candidate = candidates_[place->second];
            const Best best = read(definition, candidate.parts);
            if (best.in_source && candidate.documentation.empty()) {
                candidate.documentation = source_->texts[*best.in_source].documentation;
            }
            const auto worth = [](const Best& each) {
                return std::pair(each.lines.count(), each.in_source.has_value());
            };
            if (is_new || worth(best) > worth(candidate.best)) {
                candidate.best = best;
            }
        }
        for (Candidate& candidate : candidates_) {
            if (is_module_of(candidate.parts.descriptors, path_)) {
                result_.declared.modules.push_back(candidate.symbol);
            } else {
                candidate.declaration = declaration_of(candidate);
            }
        }
    }

    // What one definition says of lines: the document where it knows the whole declaration, else the source.
    Best read(const Definition& definition, const Symbol& parts) {
        Best best{definition.lines, definition.name, std::nullopt};
        if (source_ == nullptr || !definition.name) {
            return best;
        }
        const std::string name = written(parts.descriptors.back().name);
        best.in_source = source_->find(*definition.name, name);
        if (!best.in_source) {
            note_absence(parts, name);
            return best;
        }
        const SourceDeclaration& found = outline()->declarations[*best.in_source];
        const bool holds_name =
            definition.lines.first <= definition.name->line && definition.name->line <= definition.lines.last;
        if (!definition.is_whole || !holds_name) {
            best.lines = {found.first_line, found.last_line};
        }
        return best;
    }

    // Functions and types are always found in the source that was indexed, if it parses.
    void note_absence(const Symbol& parts, const std::string& name) {
        const Suffix suffix = parts.descriptors.back().suffix;
        const bool is_searched =
            outline() != nullptr && !outline()->is_damaged && (suffix == Suffix::METHOD || suffix == Suffix::TYPE);
        result_.has_moved = result_.has_moved || (is_searched && std::ranges::find(outline()->declarations, name,
                                                                                   &SourceDeclaration::name) !=
                                                                     outline()->declarations.end());
    }

    [[nodiscard]] Declaration declaration_of(const Candidate& candidate) const {
        const std::span<const Descriptor> descriptors = candidate.parts.descriptors;
        const Description& described = description(candidate.symbol);
        Declaration declaration;
        declaration.symbol = candidate.symbol;
        declaration.lines = candidate.best.lines;
        const SourceDeclaration* const found =
            candidate.best.in_source ? &outline()->declarations[*candidate.best.in_source] : nullptr;
        // The source declares a parameter only where it is a property of its class, too.
        const bool is_property = descriptors.back().suffix == Suffix::PARAMETER && found != nullptr &&
                                 found->position == *candidate.best.name;
        const bool is_in_test = outline() != nullptr && outline()->is_in_test(declaration.lines.first);
        if (is_in_test || (!is_property && !is_declaration(descriptors.back(), described.kind))) {
            return declaration;
        }
        declaration.signature = described.signature;
        declaration.documentation = described.documentation;
        SourceHints hints;
        hints.is_callable = callable_types_.hold_one_of(described.callable.if_one_can);
        if (found != nullptr) {
            const bool is_callable = found->is_callable || callable_types_.hold_one_of(found->type_names);
            hints = {found->kind, hints.is_callable || is_callable, found->is_constant};
            declaration.signature = source_->texts[*candidate.best.in_source].signature;
            declaration.documentation = source_->texts[*candidate.best.in_source].documentation;
            declaration.documentation =
                declaration.documentation.empty() ? candidate.documentation : declaration.documentation;
        }
        declaration.kind =
            is_nested_function(descriptors, described, hints) ? "" : kind_of(descriptors, described, hints);
        declaration.is_public = stands_outside(descriptors) && is_public(candidate);
        return declaration;
    }

    // Whether scip-python calls a method of the class what is a function in a method.
    static bool is_nested_function(std::span<const Descriptor> descriptors, const Description& described,
                                   const SourceHints& hints) {
        return described.kind == SymbolKind::UNSPECIFIED && hints.kind == "function" &&
               kind_of(descriptors, described, {}) == "method";
    }

    [[nodiscard]] bool is_public(const Candidate& candidate) const {
        if (outline() != nullptr) {
            return candidate.best.in_source
                       ? outline()->declarations[*candidate.best.in_source].is_public
                       : outline()->public_names.contains(written(candidate.parts.descriptors.back().name),
                                                          candidate.best.name ? candidate.best.name->line
                                                                              : candidate.best.lines.first);
        }
        const bool is_there = source_ != nullptr;
        return !is_there || is_public_by_signature(language_, description(candidate.symbol));
    }

    // Puts candidates of one scope and one name into one group: accessors of a property, and what a token names
    // together.
    void merge() {
        std::unordered_map<std::uint32_t, std::size_t> first_of_group;
        std::map<std::pair<std::string_view, std::string>, std::size_t> first_accessor;
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            const Candidate& candidate = candidates_[place];
            const Descriptor& last = candidate.parts.descriptors.back();
            if (is_accessor(last)) {
                unite(place,
                      first_accessor.try_emplace({candidate.parts.scope, written(last.name)}, place).first->second);
            }
            for (const std::uint32_t group : contents_.tokens.groups(candidate.symbol)) {
                unite(place, first_of_group.try_emplace(group, place).first->second);
            }
        }
        merge_implicit_constructors();
    }

    // A constructor that nobody wrote is said to stand where the name of its type does: it is one with that.
    void merge_implicit_constructors() {
        std::unordered_map<std::string_view, std::size_t> places;
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            places.emplace(contents_.symbols.symbol(candidates_[place].symbol), place);
        }
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            Candidate& candidate = candidates_[place];
            const bool is_method = candidate.parts.descriptors.back().suffix == Suffix::METHOD;
            const auto type = is_method ? places.find(candidate.parts.scope) : places.end();
            if (type != places.end() && candidates_[type->second].best.name == candidate.best.name) {
                candidate.declaration.kind = {};
                unite(place, type->second);
            }
        }
    }

    std::size_t root(std::size_t place) {
        while (candidates_[place].group != place) {
            place = candidates_[place].group = candidates_[candidates_[place].group].group;
        }
        return place;
    }

    void unite(std::size_t left, std::size_t right) {
        const std::size_t first = root(left);
        const std::size_t second = root(right);
        candidates_[std::max(first, second)].group = std::min(first, second);
    }

    // Whether the first of two that are one declaration gives its kind and lines: a class or struct, else the one with
    // more lines, for an interface of three lines does not hide the function of its name.
    static bool is_better(const Declaration& left, const Declaration& right) {
        const auto key = [](const Declaration& declaration) {
            const bool is_class = declaration.kind == "class" || declaration.kind == "struct";
            return std::tuple(!is_class, -declaration.lines.count(), rank_of_kind(declaration.kind));
        };
        return key(left) < key(right);
    }

    // What else is one with a declaration belongs to it: it is public if one of them is, and its texts are those of
    // all.
    static void add_to(Declaration& declaration, const Declaration& other) {
        declaration.is_public = declaration.is_public || other.is_public;
        if (declaration.documentation.empty()) {
            declaration.documentation = other.documentation;
        }
        if (!other.signature.empty()) {
            declaration.further_signatures.push_back(other.signature);
        }
    }

    void add_declarations() {
        std::vector<std::size_t> places;  // of the candidate that is the declaration of its group
        std::unordered_map<std::size_t, std::size_t> best_of_group;
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            if (candidates_[place].declaration.kind.empty()) {
                continue;
            }
            const auto [best, is_new] = best_of_group.try_emplace(root(place), place);
            if (!is_new && is_better(candidates_[place].declaration, candidates_[best->second].declaration)) {
                best->second = place;
            }
        }
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            const auto best = best_of_group.find(root(place));
            if (best == best_of_group.end() || candidates_[place].declaration.kind.empty()) {
                continue;
            }
            if (best->second == place) {
                places.push_back(place);
            } else {
                add_to(candidates_[best->second].declaration, candidates_[place].declaration);
            }
        }
        std::ranges::stable_sort(places, {},
                                 [&](std::size_t place) { return candidates_[place].declaration.lines.first; });
        std::unordered_map<std::size_t, std::uint32_t> declarations;  // by group
        for (const std::size_t place : places) {
            declarations.emplace(root(place), static_cast<std::uint32_t>(result_.declared.declarations.size()));
            const bool is_damaged = outline() != nullptr && outline()->is_damaged;
            result_.out_of_damage += is_damaged && !candidates_[place].best.in_source ? 1 : 0;
            result_.declared.declarations.push_back(candidates_[place].declaration);
        }
        add_declared(declarations);
    }

    void add_declared(const std::unordered_map<std::size_t, std::uint32_t>& declarations) {
        std::unordered_map<SymbolNumber, std::uint32_t> declaration_of_symbol;
        for (std::size_t place = 0; place < candidates_.size(); ++place) {
            if (const auto declaration = declarations.find(root(place)); declaration != declarations.end()) {
                declaration_of_symbol.emplace(candidates_[place].symbol, declaration->second);
            }
        }
        for (const Candidate& candidate : candidates_) {
            const auto own = declaration_of_symbol.find(candidate.symbol);
            if (own == declaration_of_symbol.end()) {
                continue;
            }
            std::uint32_t declaration = own->second;
            if (candidate.declaration.kind == "constructor") {
                const std::optional<SymbolNumber> type = contents_.symbols.find(candidate.parts.scope);
                const auto found = type ? declaration_of_symbol.find(*type) : declaration_of_symbol.end();
                declaration = found == declaration_of_symbol.end() ? declaration : found->second;
            }
            result_.declared.symbols.push_back({candidate.symbol, declaration, candidate.best.lines.count(),
                                                file_.descriptions.contains(candidate.symbol)});
        }
        for (const Definition& definition : file_.definitions) {
            if (definition.offset && declaration_of_symbol.contains(definition.symbol)) {
                result_.declared.names.push_back({*definition.offset, definition.symbol});
            }
        }
        std::vector<indexing::NamePlace>& names = result_.declared.names;
        std::ranges::sort(names);
        names.erase(std::unique(names.begin(), names.end()), names.end());
    }

    const std::string& path_;
    const FileContents& file_;
    const std::string& language_;
    const Contents& contents_;
    const DefinitionSites& sites_;
    const CallableTypes& callable_types_;
    const Source* source_;
    std::vector<Candidate> candidates_;
    ReadDeclarations result_;
};

}  // namespace

DefinitionSites::DefinitionSites(const Contents& contents) : is_defined_(contents.symbols.size()) {
    for (const auto& [path, file] : contents.files) {
        for (const Definition& definition : file.definitions) {
            if (definition.is_forward) {
                forward_.try_emplace(definition.symbol, &file);
            } else {
                is_defined_[definition.symbol] = true;
            }
        }
    }
}

bool DefinitionSites::counts(const Definition& definition, const FileContents& file) const {
    return !definition.is_forward || (!is_defined_[definition.symbol] && forward_.at(definition.symbol) == &file);
}

ReadDeclarations read_declarations(const std::string& path, const FileContents& file, const std::string& language,
                                   const Contents& contents, const DefinitionSites& sites,
                                   const CallableTypes& callable_types, const sources::Source* source) {
    return FileReader(path, file, language, contents, sites, callable_types, source).read();
}

}  // namespace host::scip
