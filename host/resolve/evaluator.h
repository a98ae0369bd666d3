// Evaluates expressions: what a name means where it stands, what a value is an instance of.
#pragma once

#include "host/resolve/catalog.h"
#include "host/resolve/languages.h"
#include "host/resolve/meaning.h"
#include "host/resolve/meaning_memory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace host::resolve {

/// Types that a type has beside those that its own declaration states: `impl Trait for Type`.
using FurtherBases = std::unordered_map<Symbol, std::vector<Place>>;

/// Evaluates the expressions of a repository, for one thread. What it found out it keeps; `MeaningMemory` says how far a
/// result is independent of that.
class Evaluator {
  public:
    /// All must outlive the object. The catalog must be linked.
    Evaluator(const Catalog& catalog, const Languages& languages, const FurtherBases& further_bases)
        : catalog_(catalog), languages_(languages), further_bases_(further_bases) {}

    /// Returns what an expression means: of a name, the declarations that it may refer to. A variable is SYMBOL here;
    /// `values` tells what it holds.
    Meaning evaluate(const Place& place);

    /// Returns a meaning with variables replaced by what they hold, and aliases by the types that they stand for.
    Meaning values(const Meaning& meaning);

    /// Returns the functions and types that a CALL may call, by its arguments where the language tells functions apart
    /// by them.
    Meaning functions_called(const Place& call);

    /// Forgets most of what is kept, once it holds the meanings of more than `most` expressions.
    void trim(std::size_t most) { memory_.trim(most); }

  private:
    using Subject = Question::Subject;

    Meaning compute(const Place& place);
    Meaning evaluate(FileId file, syntax::ExpressionId expression) { return evaluate(Place{file, expression}); }
    Meaning values(FileId file, syntax::ExpressionId expression) { return values(evaluate(file, expression)); }

    // Names (evaluator_names.cpp).
    Meaning named(FileId file, const syntax::Expression& name);
    Meaning named_in_scope(FileId file, const syntax::Expression& name);
    Meaning named_around(FileId file, Symbol around, bool is_innermost, Name name, syntax::Space space);
    void add_visible(FileId file, Container container, Name name, Meaning& found) const;
    [[nodiscard]] bool may_mean_another(const Meaning& found, syntax::Space space) const;
    Meaning named_at_top(FileId file, Name name, syntax::Space space);
    Meaning global(FileId file, const syntax::Expression& name);
    Meaning import_meaning(const ImportPlace& place);
    Meaning imported_modules(const ImportPlace& place, const syntax::Import& import);
    [[nodiscard]] std::vector<ImportPlace> leading_apart(std::span<const ImportPlace> stars) const;
    [[nodiscard]] bool is_passed_on(const ImportPlace& place) const;
    const std::vector<ImportPlace>& passed_on_stars(Container container);
    Meaning exported(Container container, Name name);
    Meaning compute_exported(Container container, Name name);
    Meaning own_exports(Container container, Name name);
    [[nodiscard]] Name name_of_whole(Container module) const;
    Meaning members_beside_wholes(const Meaning& of, Name name);
    Meaning member_of_whole(Container module, Name name);
    [[nodiscard]] Meaning tags(const Meaning& found) const;
    [[nodiscard]] Meaning types(const Meaning& found, const LanguageRules& rules) const;
    [[nodiscard]] bool is_in_place_of_all(Symbol type, const Meaning& others) const;
    [[nodiscard]] Meaning chosen(const Meaning& found, syntax::Space space, const LanguageRules& rules) const;

    // Members (evaluator_members.cpp).
    Meaning members(const Meaning& of, Name name);
    [[nodiscard]] Meaning without_repeated_namespaces(const Meaning& meaning) const;
    Meaning member(FileId file, const syntax::Expression& member);
    [[nodiscard]] Meaning of_kind(const Meaning& members, Symbol type, bool is_static) const;
    struct MemberSearch {
        Name name;
        std::unordered_set<Symbol> types = {};  // that were asked, each once
        FileId file = NONE;                     // of the first
        std::size_t steps = 0;
    };
    void add_members(const Entity& of, MemberSearch& search, Meaning& found);
    bool add_members_of_type(Symbol type, const Place& arguments, MemberSearch& search, Meaning& found);
    bool add_members_of_bases(Symbol type, MemberSearch& search, Meaning& found);
    bool add_nearest_members(Symbol type, MemberSearch& search, Meaning& found);
    Meaning bases_of(Symbol type);
    [[nodiscard]] bool has_overloads(Symbol type) const;
    [[nodiscard]] Symbol enclosing_type(FileId file, syntax::DeclarationId declaration) const;

    // Values and types (evaluator_types.cpp).
    void add_values(const Entity& entity, std::size_t depth, Meaning& found);
    Meaning instances(const Meaning& types);
    Meaning called(const Meaning& functions);
    Meaning accepted(const Meaning& functions, const syntax::Expression& argument);
    void add_accepted(const Entity& function, const syntax::Expression& argument, std::size_t depth, Meaning& found);
    Meaning parts(const Meaning& wholes, const syntax::Expression& asked);
    void add_parts(const Entity& whole, const syntax::Expression& asked, std::size_t depth, Meaning& found);
    void add_parts_of_instance(const Entity& instance, const syntax::Expression& asked, std::size_t depth,
                               Meaning& found);
    void add_parts_of_structure(const Entity& whole, const syntax::Expression& asked, std::size_t depth,
                                Meaning& found);
    void add_results_of_special_method(const Entity& instance, const syntax::Expression& asked, std::size_t depth,
                                       Meaning& found);
    bool add_overloaded(const Entity& value, const syntax::Expression& asked, std::size_t depth, Meaning& found);
    [[nodiscard]] bool has_plain_pointers(FileId file) const;
    Meaning substituted(const Meaning& meaning, const Place& arguments);
    Meaning generic(FileId file, const syntax::Expression& expression, const Place& place);

    const Catalog& catalog_;
    const Languages& languages_;
    const FurtherBases& further_bases_;
    MeaningMemory memory_;
    // Imports of all names that lead apart, at the top of a file, and passed on by a container.
    std::unordered_map<FileId, std::vector<ImportPlace>> stars_of_files_;
    std::unordered_map<Container, std::vector<ImportPlace>> passed_on_stars_;
};

/// Adds an entity unless it is there.
void add_once(Meaning& meaning, const Entity& entity);
void add_once(Meaning& meaning, const Meaning& more);

}  // namespace host::resolve
