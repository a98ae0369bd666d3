// Collects what a source file states while its tree is read: expressions, each once, and the scopes of its locals.
#pragma once

#include "host/syntax/number_table.h"
#include "host/syntax/syntax.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::syntax {

/// When a local becomes visible in its scope.
enum class Visibility : std::uint8_t {
    FROM_DECLARATION,  ///< from where it is bound: C, C++, Go, Java, Rust
    WHOLE_SCOPE,       ///< in all of its scope, also above: Python, JavaScript, TypeScript
};

/// A name token: where it stands, and how it is used.
struct Token {
    std::string_view name;
    std::uint32_t offset = 0;  ///< in the text, in bytes
    std::uint32_t line = 1;    ///< 1-based
    Role role = Role::VALUE;
    Space space = Space::VALUE;
    std::uint8_t arguments = Declaration::ANY_NUMBER;  ///< of a call
};

/// A part of a text, up to the next one.
struct Region {
    std::uint32_t first_line = 1;  ///< 1-based
    std::uint32_t begin = 0;       ///< in bytes
    Built built = Built::ALWAYS;

    friend bool operator==(const Region&, const Region&) = default;
};

class SyntaxBuilder {
  public:
    explicit SyntaxBuilder(Visibility visibility);

    /// States which parts of the text are built, in its order. What stands before the first always is. Holds for what
    /// is added from there on.
    void set_regions(std::vector<Region> regions) { regions_ = std::move(regions); }

    // Expressions. Equal ones have one id.

    NameId name(std::string_view text);
    ListId list(std::span<const ExpressionId> expressions);
    ExpressionId add(const Expression& expression);

    ExpressionId add(Operation operation, std::uint32_t a = 0, std::uint32_t b = 0) {
        return add({.operation = operation, .a = a, .b = b});
    }

    /// Returns the value of a type; UNKNOWN of UNKNOWN.
    ExpressionId instance(ExpressionId type);

    /// Returns ONE_OF, without UNKNOWN and repetitions: UNKNOWN for none, the expression itself for a single one.
    ExpressionId one_of(std::span<const ExpressionId> expressions);

    // Tokens. A token that names a local is no mention, unless the local stands for an IMPORT or a DECLARATION.

    /// Adds a name that is looked up where the reader is. Returns its expression.
    ExpressionId use(const Token& token);

    /// The same without a mention, for a name that is not written there.
    ExpressionId look_up(std::string_view name, Space space);

    /// Adds the name of a member of `of`. Returns its expression.
    ExpressionId use_member(ExpressionId of, const Token& token);

    /// Adds a token that means `expression`: NAME, GLOBAL, MEMBER, DECLARATION or IMPORT.
    void mention(ExpressionId expression, const Token& token);

    // Scopes. The outermost is that of the file, which has no locals: its names are declarations and imports.

    /// Opens a scope of a declaration: names in it are looked up around it.
    void open(DeclarationId declaration);

    /// Opens a scope of locals: a function, block, lambda or comprehension. A local class is a local, too.
    void open_local();

    void close();

    /// Binds a local of the innermost local scope to its value; UNKNOWN where nothing is known of it. Several values of
    /// one name in a WHOLE_SCOPE become ONE_OF; elsewhere the last holds from there on.
    void bind(std::string_view name, ExpressionId value);

    /// The same in the local scope `outward` scopes further out, such as that of the function for a `var`.
    void bind_in(std::size_t outward, std::string_view name, ExpressionId value);

    /// Has a name of the innermost local scope be looked up outside of it: `global`, `nonlocal`.
    void release(std::string_view name);

    /// Returns whether the innermost local scope binds the name.
    [[nodiscard]] bool is_bound(std::string_view name) const;

    /// Returns whether any scope that is open binds the name as a local. For names FROM_DECLARATION.
    [[nodiscard]] bool is_local(std::string_view name) const;

    /// Returns how many local scopes are open.
    [[nodiscard]] std::size_t local_depth() const;

    /// Returns the declaration whose scope is the innermost such; NO_DECLARATION at the top.
    [[nodiscard]] DeclarationId around() const;

    // Declarations and imports.

    /// Adds a declaration, which is built where its name is.
    DeclarationId declare(Declaration declaration);
    [[nodiscard]] Declaration& declaration(DeclarationId id) { return syntax_.declarations[id]; }
    std::uint32_t import(Import import);
    void set_package(std::string_view name) { syntax_.package = this->name(name); }
    void set_constraint(std::string_view constraint) { syntax_.constraint = name(constraint); }

    /// Returns how a line of the text is built.
    [[nodiscard]] Built built_at_line(std::uint32_t line) const;

    /// Returns all that was added. Nothing may be added after it.
    Syntax finish();

  private:
    struct Local {
        std::vector<ExpressionId> values;
        bool is_released = false;
    };

    struct PlacedMention {
        std::size_t mention = 0;
        TokenPlace place;
    };

    struct Scope {
        std::size_t parent = 0;
        DeclarationId declaration = NO_DECLARATION;  // around it
        bool is_local = false;
        std::unordered_map<NameId, Local> locals = {};
    };

    [[nodiscard]] std::optional<NameId> known_name(std::string_view text) const;
    ExpressionId look_up(NameId name, const Local* local, Space space);
    // The local that a name means where the reader is; null where it is none, or where that is not known yet.
    [[nodiscard]] const Local* visible_local(NameId name) const;
    [[nodiscard]] const Local* find_local(std::size_t scope, NameId name) const;
    [[nodiscard]] Built built_before(std::vector<Region>::const_iterator next) const;
    ExpressionId value_of(const Local& local);
    void settle_names();
    void settle_mentions();
    void add_places();

    Visibility visibility_;
    Syntax syntax_;
    NumberTable names_;        // of the names of `syntax_`
    NumberTable expressions_;  // of its expressions; those that are settled are not asked for again
    std::map<std::vector<ExpressionId>, ListId> lists_;
    NumberTable mentions_;  // of its mentions
    std::vector<Region> regions_;
    std::vector<PlacedMention> places_;  // of tokens, in the order in which they came
    std::vector<Scope> scopes_{{}};
    std::size_t scope_ = 0;  // the innermost
    // In a WHOLE_SCOPE, a name is settled when all scopes are known: until then its `a` is the scope it stands in.
    std::vector<ExpressionId> unsettled_;
};

}  // namespace host::syntax
