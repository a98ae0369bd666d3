#include "host/syntax/surface.h"

#include "host/syntax/operands.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace host::syntax {

namespace {

// Copies what is asked for, each thing once, and returns its new number.
class Surface {
  public:
    explicit Surface(const Syntax& syntax)
        : from_(syntax), names_(syntax.names.size(), NEW), expressions_(syntax.expressions.size(), NEW),
          lists_(syntax.lists.size(), NEW) {
        names_[0] = expressions_[0] = lists_[0] = 0;
    }

    Syntax copy() {
        // Fails to compile when a member is added.
        const auto& [names, expressions, lists, declarations, imports, mentions, places, package, constraint] = from_;
        to_.package = name(package);
        to_.constraint = name(constraint);
        to_.declarations = declarations;
        std::ranges::for_each(to_.declarations, [this](Declaration& each) { renumber(each); });
        to_.imports = imports;
        std::ranges::for_each(to_.imports, [this](Import& each) { renumber(each); });
        for (std::size_t at = 0; at < to_.expressions.size(); ++at) {  // which grows by what they lead to
            const Expression& expression = expressions[origins_[at]];
            const auto [a, b] = operands_of(expression.operation);
            const Expression renumbered{expression.operation, operand(a, expression.a), operand(b, expression.b),
                                        name(expression.name)};
            to_.expressions[at] = renumbered;
        }
        return std::move(to_);
    }

  private:
    static constexpr std::uint32_t NEW = 0xFFFF'FFFF;

    void renumber(Declaration& declaration) {
        // Fails to compile when a member is added.
        auto& [own_name, written, kind, parent, owner, type, bases, parameters, alternative_of, offset, built,
               least_arguments, most_arguments, is_private, is_definition, is_static, is_hidden, is_local, is_in_test,
               is_implicit, is_substitute] = declaration;
        own_name = name(own_name);
        written = name(written);
        owner = expression(owner);
        type = expression(type);
        bases = list(bases);
        parameters = list(parameters);
        offset = 0;
    }

    void renumber(Import& import) {
        // Fails to compile when a member is added.
        auto& [own_name, module, original, further, around, built, is_star, is_exported, is_system, is_type,
               is_in_function, is_in_comment] = import;
        for (NameId* const each : {&own_name, &module, &original, &further}) {
            *each = name(*each);
        }
    }

    NameId name(NameId id) {
        if (names_[id] == NEW) {
            names_[id] = static_cast<NameId>(to_.names.size());
            to_.names.add(from_.names[id]);
        }
        return names_[id];
    }

    ExpressionId expression(ExpressionId id) {
        if (expressions_[id] == NEW) {
            expressions_[id] = static_cast<ExpressionId>(to_.expressions.size());
            to_.expressions.emplace_back();
            origins_.push_back(id);
        }
        return expressions_[id];
    }

    ListId list(ListId id) {
        if (lists_[id] == NEW) {
            lists_[id] = static_cast<ListId>(to_.lists.size());
            to_.lists.push_back(from_.lists[id]);
            for (const ExpressionId element : from_.list(id)) {
                to_.lists.push_back(expression(element));
            }
        }
        return lists_[id];
    }

    std::uint32_t operand(Operand kind, std::uint32_t number) {
        return kind == Operand::EXPRESSION ? expression(number) : kind == Operand::LIST ? list(number) : number;
    }

    const Syntax& from_;
    Syntax to_;
    std::vector<NameId> names_;  // by the old number; the new one, or `NEW`
    std::vector<ExpressionId> expressions_;
    std::vector<ListId> lists_;
    std::vector<ExpressionId> origins_{UNKNOWN};  // by the new number of an expression: the old one
};

}  // namespace

Syntax surface_of(const Syntax& syntax) {
    return Surface(syntax).copy();
}

}  // namespace host::syntax
