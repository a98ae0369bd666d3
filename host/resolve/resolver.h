// Resolves the names of a repository: from what its files state to references.
#pragma once

#include "host/resolve/repository.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace host::resolve {

/// Why a reference is known to lead to its target.
enum class Evidence : std::uint8_t {
    AMBIGUOUS,  ///< it may lead to any of several declarations
    IMPORT,     ///< bindings lead to a declaration of another file
    LOCAL,      ///< bindings lead to a declaration of the same file
    UNIQUE,     ///< no binding can be followed, and one declaration of the language bears the name
};

/// A declaration of a repository.
struct Target {
    FileId file = 0;
    syntax::DeclarationId declaration = 0;  ///< `MODULE`: the file as a module

    static constexpr syntax::DeclarationId MODULE = syntax::NO_DECLARATION;

    friend auto operator<=>(const Target&, const Target&) = default;
};

/// All references from one file to one declaration with one kind of evidence.
struct Reference {
    Target target;
    std::int64_t count = 0;  ///< name tokens
    std::uint32_t line = 0;  ///< of the first, 1-based
    Evidence evidence = Evidence::AMBIGUOUS;
};

/// A name token, and one of the declarations that it leads to.
struct TokenTarget {
    syntax::TokenPlace place;
    Target target;

    friend auto operator<=>(const TokenTarget&, const TokenTarget&) = default;
};

/// The references of one file.
struct References {
    std::vector<Reference> references;  ///< by target, then evidence
    std::int64_t unresolved = 0;        ///< name tokens that lead to nothing in the repository
};

class Resolver {
  public:
    /// Links the declarations and imports of all files. `repository` must outlive this object.
    explicit Resolver(const Repository& repository);
    ~Resolver();
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;

    /// Returns the references of a file. May be called on several threads.
    [[nodiscard]] References references_of(FileId file) const;

    /// Returns where bindings lead the tokens of a file, those of `IMPORT` and `LOCAL`, by place and target. A token
    /// has several targets where these are parts of one declaration. None for a file whose syntax has no places. May be
    /// called on several threads.
    [[nodiscard]] std::vector<TokenTarget> tokens_of(FileId file) const;

    /// Returns the files that a file imports names from, or for their own sake, ascending; not that of a package where
    /// it imports a module of that. May be called on several threads.
    [[nodiscard]] std::vector<FileId> imports_of(FileId file) const;

    /// Returns whether a declaration only announces others, such as a prototype of a function that the repository
    /// defines. References lead to these instead.
    [[nodiscard]] bool is_defined_elsewhere(FileId file, syntax::DeclarationId declaration) const;

  private:
    class Linked;
    std::unique_ptr<const Linked> linked_;
};

}  // namespace host::resolve
