// Overloads of Java: which of several methods of one name a call is of.
//
//     void put(int a)    void put(String a)    void put(Object a)
//
//     put(1)      put(int)
//     put("")     put(String): it fits, as put(Object) does, and is the more specific one
//     put(f())    both, if nothing is known of what `f` gives
#pragma once

#include "host/resolve/catalog.h"
#include "host/resolve/meaning.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace host::resolve {

class Evaluator;

class JavaOverloads {
  public:
    JavaOverloads(const Catalog& catalog, Evaluator& evaluator) : catalog_(catalog), evaluator_(evaluator) {}

    /// Returns those methods among `functions` that a call with these arguments may be of, by the types that the
    /// sources state: none where none fits, several where the types do not tell. What is no method stays.
    [[nodiscard]] Meaning taking(const Meaning& functions, FileId file,
                                 std::span<const syntax::ExpressionId> arguments) const;

  private:
    /// A type by its declaration, or else by its name; arguments of generic types do not count.
    struct Type {
        enum class What : std::uint8_t { UNKNOWN, DECLARED, NAMED };

        What what = What::UNKNOWN;
        std::uint32_t id = NONE;  // a symbol, or a name
        std::size_t arrays = 0;   // of how many dimensions

        friend bool operator==(const Type&, const Type&) = default;
    };

    /// How an argument fits a parameter, the best first.
    enum class Fit : std::uint8_t { SAME, SUBTYPE, BOXED, UNKNOWN, NEVER };

    struct Candidate {
        Entity function;
        std::vector<Type> parameters;  // one for each argument
        std::vector<Fit> fits;
        bool is_variable = false;  // takes the last arguments as an array that the call does not state
    };

    [[nodiscard]] std::vector<Candidate> candidates(const Meaning& functions, const std::vector<Type>& arguments) const;
    [[nodiscard]] Candidate candidate(const Entity& function, const std::vector<Type>& arguments) const;
    [[nodiscard]] bool overrides(const Candidate& method, const Candidate& inherited) const;
    [[nodiscard]] bool takes_array(const Type& array, const std::vector<Type>& arguments, std::size_t at) const;
    [[nodiscard]] bool is_more_specific(const Candidate& one, const Candidate& other) const;
    [[nodiscard]] Type type_at(const Place& place, std::size_t depth = 0) const;
    [[nodiscard]] Type type_of_value(const Place& place, std::size_t depth = 0) const;
    [[nodiscard]] Type type_of_entity(const Entity& entity, std::size_t depth) const;
    [[nodiscard]] Fit fit(const Type& argument, const Type& parameter) const;
    [[nodiscard]] Fit fit_named(const Type& argument, const Type& parameter) const;
    [[nodiscard]] Fit fit_declared(const Type& argument, const Type& parameter) const;
    [[nodiscard]] std::string_view name_of(const Type& type) const;

    const Catalog& catalog_;
    Evaluator& evaluator_;
};

}  // namespace host::resolve
