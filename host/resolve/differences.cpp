#include "host/resolve/differences.h"

#include "host/resolve/c_systems.h"
#include "host/resolve/language_rules.h"
#include "host/resolve/paths.h"
#include "host/resolve/unwritten_names.h"
#include "host/syntax/operands.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host::resolve {

namespace {

using syntax::Declaration;
using syntax::DeclarationId;
using syntax::Expression;
using syntax::ExpressionId;
using syntax::Import;
using syntax::ListId;
using syntax::NameId;
using syntax::Operand;
using syntax::Operation;
using syntax::Syntax;

using Number = std::uint32_t;

// Numbers for what files state, equal ones for equal things, wherever in a file they stand.
class Numbers {
  public:
    Number of(std::string_view name) { return names_.try_emplace(std::string(name), names_.size()).first->second; }
    Number of(std::vector<Number> parts) { return things_.try_emplace(std::move(parts), things_.size()).first->second; }

  private:
    std::unordered_map<std::string, Number> names_;
    std::map<std::vector<Number>, Number> things_;
};

// What a file states, in such numbers.
class Statements {
  public:
    Statements(const Syntax& syntax, Numbers& numbers)
        : syntax_(syntax), numbers_(numbers), expressions_(syntax.expressions.size(), NEW) {
        for (const Declaration& declaration : syntax.declarations) {
            const Number around =
                declaration.parent == syntax::NO_DECLARATION ? NOWHERE : declarations_[declaration.parent];
            const Number name = number_of(declaration.name);
            declarations_.push_back(numbers_.of({around, name, before_[{around, name}]++}));
        }
        for (const Import& each : syntax.imports) {
            imports_.push_back(number_of(each));
        }
    }

    [[nodiscard]] const Syntax& syntax() const { return syntax_; }
    // By which a declaration is the same in both states.
    [[nodiscard]] Number declaration(DeclarationId id) const { return declarations_[id]; }
    [[nodiscard]] const std::vector<Number>& imports() const { return imports_; }

    // What a declaration states.
    Number statement(const Declaration& declaration) {
        // Fails to compile when a member is added.
        const auto& [name, written, kind, parent, owner, type, bases, parameters, alternative_of, offset, built,
                     least_arguments, most_arguments, is_private, is_definition, is_static, is_hidden, is_local,
                     is_in_test, is_implicit, is_substitute] = declaration;
        std::vector<Number> parts{number_of(written), static_cast<Number>(kind),
                                  expression(owner),  expression(type),
                                  list(bases),        list(parameters),
                                  of(alternative_of), static_cast<Number>(built),
                                  least_arguments,    most_arguments};
        for (const bool flag :
             {is_private, is_definition, is_static, is_hidden, is_local, is_in_test, is_implicit, is_substitute}) {
            parts.push_back(flag ? 1 : 0);
        }
        return numbers_.of(std::move(parts));
    }

  private:
    static constexpr Number NEW = 0xFFFF'FFFF;
    static constexpr Number BEGUN = 0xFFFF'FFFE;
    static constexpr Number NOWHERE = 0xFFFF'FFFD;

    Number number_of(NameId name) { return numbers_.of(syntax_.name(name)); }

    [[nodiscard]] Number of(DeclarationId id) const {
        return id == syntax::NO_DECLARATION ? NOWHERE : declarations_[id];
    }

    Number number_of(const Import& import) {
        // Fails to compile when a member is added.
        const auto& [name, module, original, further, around, built, is_star, is_exported, is_system, is_type,
                     is_in_function, is_in_comment] = import;
        std::vector<Number> parts{of(around), static_cast<Number>(built)};
        for (const NameId each : {name, module, original, further}) {
            parts.push_back(number_of(each));
        }
        for (const bool flag : {is_star, is_exported, is_system, is_type, is_in_function, is_in_comment}) {
            parts.push_back(flag ? 1 : 0);
        }
        return numbers_.of(std::move(parts));
    }

    Number list(ListId id) {
        std::vector<Number> parts;
        for (const ExpressionId each : syntax_.list(id)) {
            parts.push_back(expression(each));
        }
        return numbers_.of(std::move(parts));
    }

    // Numbers first what an expression is made of, however deep that is.
    Number expression(ExpressionId id) {
        std::vector<ExpressionId> open{id};
        while (!open.empty()) {
            const ExpressionId next = open.back();
            const std::size_t before = open.size();
            const Expression& expression = syntax_.expressions[next];
            const auto [a, b] = syntax::operands_of(expression.operation);
            if (expressions_[next] == NEW) {
                expressions_[next] = BEGUN;
                add_new(a, expression.a, open);
                add_new(b, expression.b, open);
            }
            if (open.size() == before) {
                open.pop_back();
                if (expressions_[next] == BEGUN) {
                    expressions_[next] =
                        numbers_.of({static_cast<Number>(expression.operation), operand(a, expression.a),
                                     operand(b, expression.b), number_of(expression.name)});
                }
            }
        }
        return expressions_[id];
    }

    void add_new(Operand kind, Number number, std::vector<ExpressionId>& open) const {
        if (kind == Operand::EXPRESSION && expressions_[number] == NEW) {
            open.push_back(number);
        } else if (kind == Operand::LIST) {
            std::ranges::copy_if(syntax_.list(number), std::back_inserter(open),
                                 [&](ExpressionId each) { return expressions_[each] == NEW; });
        }
    }

    Number operand(Operand kind, Number number) {
        switch (kind) {
        case Operand::EXPRESSION:
            return expressions_[number];
        case Operand::LIST: {
            std::vector<Number> parts;
            for (const ExpressionId each : syntax_.list(number)) {
                parts.push_back(expressions_[each]);
            }
            return numbers_.of(std::move(parts));
        }
        case Operand::DECLARATION:
            return of(number);
        case Operand::IMPORT:
            return imports_[number];
        case Operand::NUMBER:
            break;
        }
        return number;
    }

    const Syntax& syntax_;
    Numbers& numbers_;
    std::map<std::pair<Number, Number>, Number> before_;  // by parent and name: how many are before
    std::vector<Number> declarations_;
    std::vector<Number> imports_;
    std::vector<Number> expressions_;  // by their own numbers
};

class Differences {
  public:
    Differences(const File& before, const File& now, std::span<const File> files, const LanguageRules& rules,
                ChangedNames& names)
        : file_(now), rules_(rules), before_(*before.syntax, numbers_), now_(*now.syntax, numbers_), names_(names) {
        for (const File& file : files) {
            names_of_files_.insert(file_name(file.path));
        }
    }

    [[nodiscard]] bool add() {
        return stars(before_) == stars(now_) && add_imports(before_, now_) && add_imports(now_, before_) &&
               names_.add_leading_to(bound_, file_) && add_declarations();
    }

  private:
    // The imports of all names, in their order: those of the repository, and whether there are others.
    [[nodiscard]] std::pair<std::vector<Number>, bool> stars(const Statements& state) const {
        std::pair<std::vector<Number>, bool> stars;
        for (std::size_t at = 0; at < state.imports().size(); ++at) {
            const Import& import = state.syntax().imports[at];
            if (import.is_system && is_foreign_header(state.syntax().name(import.module))) {
                stars.second = true;
            } else if (import.is_star) {
                stars.first.push_back(state.imports()[at]);
            }
        }
        return stars;
    }

    // Whether an #include <name> leads out of the repository, and says nothing of the system.
    [[nodiscard]] bool is_foreign_header(std::string_view name) const {
        return !is_header_of_other_system(name) && !names_of_files_.contains(file_name(name));
    }

    // Adds the names of imports that the other state has less often.
    [[nodiscard]] bool add_imports(const Statements& state, const Statements& other) {
        std::multiset<Number> left(other.imports().begin(), other.imports().end());
        for (std::size_t at = 0; at < state.imports().size(); ++at) {
            if (const auto same = left.find(state.imports()[at]); same != left.end()) {
                left.erase(same);
                continue;
            }
            const Import& import = state.syntax().imports[at];
            const std::string_view name = state.syntax().name(import.name);
            if (name == WHOLE_MODULE) {
                return false;
            }
            bound_.add(name);
            if (import.is_exported || rules_.exports_imports) {
                names_.add_imported(name);
            }
            if (name.empty() && !import.is_star) {
                add_qualifiers(state.syntax().name(import.module));
            }
        }
        return true;
    }

    // Adds what an import may bind that does not say its name: a qualifier that is in its path, or in that of no import.
    void add_qualifiers(std::string_view path) {
        const Syntax& syntax = *file_.syntax;
        const auto is_in = [](std::string_view qualifier, std::string_view module) {
            return module.find(qualifier) != std::string_view::npos;
        };
        for (const Expression& expression : syntax.expressions) {
            const Expression& of = syntax.expressions[expression.operation == Operation::MEMBER ? expression.a : 0];
            const std::string_view qualifier = syntax.name(of.name);
            const auto is_of = [&](const Import& import) { return is_in(qualifier, syntax.name(import.module)); };
            if (of.operation == Operation::NAME &&
                (is_in(qualifier, path) || std::ranges::none_of(syntax.imports, is_of))) {
                bound_.add(qualifier);
            }
        }
    }

    [[nodiscard]] bool add_declarations() {
        const std::unordered_map<Number, Number> before = statements_in(before_);
        const std::unordered_map<Number, Number> now = statements_in(now_);
        return add_declarations(before_, before, now) && add_declarations(now_, now, before);
    }

    static std::unordered_map<Number, Number> statements_in(Statements& state) {
        std::unordered_map<Number, Number> statements;
        for (DeclarationId id = 0; id < state.syntax().declarations.size(); ++id) {
            statements.emplace(state.declaration(id), state.statement(state.syntax().declarations[id]));
        }
        return statements;
    }

    // Adds the declarations that the other state does not have, or of which it states something else.
    [[nodiscard]] bool add_declarations(const Statements& state, const std::unordered_map<Number, Number>& statements,
                                        const std::unordered_map<Number, Number>& others) {
        for (DeclarationId id = 0; id < state.syntax().declarations.size(); ++id) {
            const Declaration& declaration = state.syntax().declarations[id];
            const auto other = others.find(state.declaration(id));
            const bool is_same = other != others.end() && other->second == statements.at(other->first);
            if (!is_same && (is_file(declaration) || !names_.add(state.syntax(), declaration))) {
                return false;
            }
        }
        return true;
    }

    // Whether a declaration may have the text of another file: `mod a;`.
    [[nodiscard]] bool is_file(const Declaration& declaration) const {
        return file_.language == "rust" && declaration.kind == syntax::Kind::NAMESPACE;
    }

    const File& file_;
    const LanguageRules& rules_;
    std::unordered_set<std::string_view> names_of_files_;  // without their folders
    Numbers numbers_;
    Statements before_;
    Statements now_;
    ChangedNames bound_;  // by imports, in the file
    ChangedNames& names_;
};

// Whether a file may declare what all files see: one that says what others declare, and imports nothing.
bool may_have_globals(const File& file) {
    return file.path.ends_with(".d.ts") && file.syntax->imports.empty();
}

}  // namespace

bool add_differences(const File& before, const File& now, std::span<const File> files, ChangedNames& names) {
    const auto name_in = [](const File& file, NameId Syntax::*name) { return file.syntax->name((*file.syntax).*name); };
    const LanguageRules* const rules = rules_of(now.language);
    return before.language == now.language && name_in(before, &Syntax::package) == name_in(now, &Syntax::package) &&
           name_in(before, &Syntax::constraint) == name_in(now, &Syntax::constraint) && !may_have_globals(before) &&
           !may_have_globals(now) && (rules == nullptr || Differences(before, now, files, *rules, names).add());
}

}  // namespace host::resolve
