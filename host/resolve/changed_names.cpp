#include "host/resolve/changed_names.h"

#include "host/resolve/c_includes.h"
#include "host/resolve/language_rules.h"
#include "host/resolve/unwritten_names.h"
#include "host/syntax/operands.h"
#include "host/syntax/type_name.h"

#include <algorithm>
#include <cstddef>
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

using Change = ChangedNames::Change;

constexpr std::size_t MOST_NAMES = 1'000;  // of more, most files have one

// What of one file leads to some names.
class LeadingToNames {
  public:
    LeadingToNames(const File& file, const ChangedNames& names)
        : language_(file.language), rules_(rules_of(file.language)), syntax_(*file.syntax), names_(names),
          leads_(syntax_.expressions.size(), false) {
        for (NameId name = 0; name < syntax_.names.size(); ++name) {
            changes_.push_back(names.change_of(syntax_.name(name)));
        }
        find_changed_at_top();
        mark_expressions();
    }

    // Adds the names of that. Returns whether names tell what leads there.
    [[nodiscard]] bool add_to(ChangedNames& names) const {
        bool is_known = true;
        for (const Import& import : syntax_.imports) {
            if (!is_changed(import)) {
                continue;
            }
            if (import.is_exported || rules_ == nullptr || rules_->exports_imports) {
                names.add_imported(syntax_.name(import.name));
            }
            is_known =
                is_known && (!import.is_star || is_of_files(import)) && syntax_.name(import.name) != WHOLE_MODULE;
        }
        std::vector<bool> has_moved;  // to another type, with its members
        for (const Declaration& declaration : syntax_.declarations) {
            const bool has_around = declaration.parent != syntax::NO_DECLARATION && has_moved[declaration.parent];
            has_moved.push_back(has_around || leads_[declaration.owner]);
            if (has_moved.back() || leads_[declaration.type] || any_leads(declaration.bases) ||
                any_leads(declaration.parameters)) {
                is_known = names.add(syntax_, declaration) && is_known;
            }
        }
        return is_known;
    }

    [[nodiscard]] bool is_any() const {
        return std::ranges::find(leads_, true) != leads_.end() ||
               std::ranges::any_of(syntax_.imports, [&](const Import& import) { return is_changed(import); }) ||
               std::ranges::any_of(syntax_.declarations, [&](const Declaration& declaration) {
                   return changes_[declaration.name] == Change::EVERYWHERE;
               });
    }

  private:
    // Finds the names that mean something else at the top of the file. One that a module has by an import does not
    // where the file binds it itself, unless by an import that leads to such a name.
    void find_changed_at_top() {
        for (const Change change : changes_) {
            is_changed_at_top_.push_back(change != Change::UNCHANGED);
        }
        const bool has_stars = std::ranges::any_of(syntax_.imports, &Import::is_star);
        const auto bind = [&](NameId name) {
            is_changed_at_top_[name] = changes_[name] == Change::EVERYWHERE || has_stars;
        };
        for (const Import& import : syntax_.imports) {
            if (import.around == syntax::NO_DECLARATION && !import.is_in_function) {
                bind(import.name);
            }
        }
        for (const Declaration& declaration : syntax_.declarations) {
            if (declaration.parent == syntax::NO_DECLARATION && !declaration.is_local) {
                bind(declaration.name);
            }
        }
        for (const Import& import : syntax_.imports) {
            is_changed_at_top_[import.name] = is_changed_at_top_[import.name] || is_changed(import);
        }
    }

    // An operand may stand before or behind its expression: up and down, until no other leads there.
    void mark_expressions() {
        const auto end = static_cast<ExpressionId>(leads_.size());
        bool has_marked = true;
        for (bool is_up = true; has_marked; is_up = !is_up) {
            has_marked = false;
            for (ExpressionId at = 1; at < end; ++at) {
                has_marked = mark(is_up ? at : end - at) || has_marked;
            }
        }
    }

    // Returns whether it was not marked before.
    bool mark(ExpressionId id) {
        const Expression& expression = syntax_.expressions[id];
        const auto [a, b] = syntax::operands_of(expression.operation);
        const bool is_new =
            !leads_[id] && (is_changed_name(expression) || leads(a, expression.a) || leads(b, expression.b));
        leads_[id] = leads_[id] || is_new;
        return is_new;
    }

    [[nodiscard]] bool is_changed_name(const Expression& expression) const {
        return expression.operation == Operation::NAME ? is_changed_at_top_[expression.name]
                                                       : changes_[expression.name] != Change::UNCHANGED;
    }

    [[nodiscard]] bool leads(Operand kind, std::uint32_t number) const {
        switch (kind) {
        case Operand::EXPRESSION:
            return leads_[number];
        case Operand::LIST:
            return any_leads(number);
        case Operand::DECLARATION:
            return is_in_changed(number);
        case Operand::IMPORT:
            return is_changed(syntax_.imports[number]);
        case Operand::NUMBER:
            break;
        }
        return false;
    }

    [[nodiscard]] bool any_leads(ListId list) const {
        return std::ranges::any_of(syntax_.list(list), [&](ExpressionId each) { return leads_[each]; });
    }

    // Whether a declaration, or one around it, has such a name: names are looked up in all of them.
    [[nodiscard]] bool is_in_changed(DeclarationId id) const {
        for (; id != syntax::NO_DECLARATION; id = syntax_.declarations[id].parent) {
            if (changes_[syntax_.declarations[id].name] == Change::EVERYWHERE) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] bool is_changed(const Import& import) const {
        return changes_[import.name] == Change::EVERYWHERE || changes_[import.original] != Change::UNCHANGED ||
               is_changed_module(import.module) || is_changed_module(import.further);
    }

    // Whether the path of a module may lead elsewhere. Its first name is that of a file or folder, but in Rust.
    [[nodiscard]] bool is_changed_module(NameId module) const {
        const std::string_view path = syntax_.name(module);
        const std::size_t first = path.find_first_of(":./");
        return changes_[module] == Change::EVERYWHERE ||
               (changes_[module] != Change::UNCHANGED &&
                (language_ == "rust" ||
                 (first != std::string_view::npos && names_.change_of(path.substr(first + 1)) != Change::UNCHANGED)));
    }

    // Whether the module of an import is found by the names of files and folders, not of declarations.
    [[nodiscard]] bool is_of_files(const Import& import) const {
        const bool is_c = language_ == "c" || language_ == "cpp";
        return language_ != "java" && language_ != "rust" && (!is_c || is_include(syntax_, import));
    }

    const std::string_view language_;
    const LanguageRules* const rules_;
    const Syntax& syntax_;
    const ChangedNames& names_;
    std::vector<Change> changes_;          // by number of a name
    std::vector<bool> is_changed_at_top_;  // likewise
    std::vector<bool> leads_;              // by number of an expression: whether such a name is looked up in it
};

}  // namespace

bool ChangedNames::add(const Syntax& syntax, const Declaration& declaration) {
    const std::string_view name = syntax.name(declaration.name);
    add(name);
    add(syntax::type_name(syntax, declaration.owner));
    const bool is_unwritten = std::ranges::find(UNWRITTEN_NAMES, name) != UNWRITTEN_NAMES.end();
    if (is_unwritten && declaration.parent != syntax::NO_DECLARATION) {
        add(syntax.name(syntax.declarations[declaration.parent].name));
    }
    return name != WHOLE_MODULE;
}

bool ChangedNames::add_leading_to_these(std::span<const File> files) {
    bool is_known = true;
    std::size_t declared = 0;
    std::size_t imported = 0;
    while (is_known && (declared < declared_.size() || imported < imported_.size())) {
        const std::size_t all_declared = declared_.size();
        const std::size_t all_imported = imported_.size();
        for (const File& file : files) {
            if (file.syntax != nullptr && has_any(*file.syntax, declared, imported)) {
                is_known = add_leading_to(*this, file) && is_known;
            }
            if (declared_.size() + imported_.size() > MOST_NAMES) {
                return false;
            }
        }
        declared = all_declared;
        imported = all_imported;
    }
    return is_known;
}

bool ChangedNames::add_leading_to(const ChangedNames& others, const File& file) {
    return LeadingToNames(file, others).add_to(*this);
}

ChangedNames::Change ChangedNames::change_of(std::string_view name) const {
    return declared_.is_in_path(name)   ? Change::EVERYWHERE
           : imported_.is_in_path(name) ? Change::IN_MODULES
                                        : Change::UNCHANGED;
}

bool ChangedNames::are_looked_up_in(const File& file) const {
    return file.syntax != nullptr && LeadingToNames(file, *this).is_any();
}

// Whether a file has one of these names, not counting those that were added first.
bool ChangedNames::has_any(const Syntax& syntax, std::size_t declared, std::size_t imported) const {
    for (NameId name = 1; name < syntax.names.size(); ++name) {
        if (declared_.is_in_path(syntax.name(name), declared) || imported_.is_in_path(syntax.name(name), imported)) {
            return true;
        }
    }
    return false;
}

}  // namespace host::resolve
