// What names mean where they stand.
#include "host/resolve/definitions.h"
#include "host/resolve/evaluator.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <tuple>
#include <utility>

namespace host::resolve {

namespace {

using syntax::Kind;
using syntax::Space;
using What = Entity::What;

Entity symbol_entity(Symbol symbol) {
    return {.what = What::SYMBOL, .id = symbol};
}

void drop_foreign(Meaning& meaning) {
    std::erase_if(meaning, is_foreign);
}

// Adds the members of a name that stand in certain files.
template <class IsWanted>
void add_members_in(const Catalog& catalog, Container container, Name name, const IsWanted& is_wanted, Meaning& found) {
    for (const Symbol symbol : catalog.members(container, name)) {
        if (is_wanted(catalog.file_of(symbol))) {
            add_once(found, symbol_entity(symbol));
        }
    }
}

}  // namespace

Meaning Evaluator::named(FileId file, const syntax::Expression& name) {
    if (languages_.rules(file) == nullptr) {
        return {};
    }
    Meaning found = named_in_scope(file, name);
    if (found.empty() && static_cast<Space>(name.b) == Space::QUALIFIER) {
        const Container package = languages_.modules(file).package(catalog_.syntax(file).name(name.name));
        if (package != NONE) {
            found.push_back({.what = What::MODULE, .id = package});
        }
    }
    return found;
}

Meaning Evaluator::named_in_scope(FileId file, const syntax::Expression& name) {
    const Name wanted = catalog_.name(file, name.name);
    const auto space = static_cast<Space>(name.b);
    const bool is_at_top = name.a == syntax::NO_DECLARATION;
    const Symbol innermost = is_at_top ? NONE : catalog_.symbol(file, name.a);
    for (Symbol around = innermost; around != NONE; around = catalog_.around(around)) {
        if (Meaning found = named_around(file, around, around == innermost, wanted, space); !found.empty()) {
            return found;
        }
        if (catalog_.declaration(around).kind == Kind::NAMESPACE && !languages_.modules(file).sees_around(around)) {
            return {};
        }
    }
    return named_at_top(file, wanted, space);
}

// What the name means as one of a type or namespace around it.
Meaning Evaluator::named_around(FileId file, Symbol around, bool is_innermost, Name name, Space space) {
    const LanguageRules& rules = *languages_.rules(file);
    Meaning found;
    switch (catalog_.declaration(around).kind) {
    case Kind::TYPE:
        // The body of a class sees its names even where its functions do not.
        if (rules.has_members_in_scope || is_innermost) {
            MemberSearch search{.name = name};
            add_members_of_type(around, {}, search, found);
            drop_foreign(found);  // a base from elsewhere may have any name
        }
        break;
    case Kind::NAMESPACE: {
        const Container container = catalog_.container_of(around);
        add_visible(file, container, name, found);
        for (const ImportPlace& place : catalog_.imports(container, name)) {
            if (place.file == file) {
                add_once(found, import_meaning(place));
            }
        }
        for (const ImportPlace& place : catalog_.star_imports(container)) {
            if (found.empty() && place.file == file) {
                add_once(found, members(import_meaning(place), name));
                drop_foreign(found);  // as may a module
            }
        }
        break;
    }
    default:
        break;
    }
    return chosen(found, space, rules);
}

// Adds the members of a name that a file sees. Of those that announce the same definitions, one stands for all: some
// types are announced in thousands of files.
void Evaluator::add_visible(FileId file, Container container, Name name, Meaning& found) const {
    const std::span<const Symbol> members = catalog_.members(container, name);
    const std::span<const Symbol> alike = catalog_.alike(container, name);
    std::vector<Symbol> announced;
    for (std::size_t at = 0; at < members.size(); ++at) {
        const FileId of = catalog_.file_of(members[at]);
        const bool is_new = std::ranges::find(announced, alike[at]) == announced.end();
        if (is_new && (of == file || languages_.modules(file).sees(file, of))) {
            add_once(found, symbol_entity(members[at]));
            announced.push_back(alike[at]);
        }
    }
}

// A macro may be defined again, and a tag is not what a plain name means where an alias has it. What is not always
// built may have been declared in place of another.
bool Evaluator::may_mean_another(const Meaning& found, Space space) const {
    const auto is_always_there = [&](const Entity& entity) {
        return entity.what != What::SYMBOL || catalog_.built(entity.id) == syntax::Built::ALWAYS;
    };
    return std::ranges::none_of(found, is_always_there) || std::ranges::any_of(found, [&](const Entity& entity) {
               const Kind kind = entity.what == What::SYMBOL ? catalog_.declaration(entity.id).kind : Kind::VALUE;
               return kind == Kind::MACRO || (kind == Kind::TYPE && space == Space::TYPE);
           });
}

// Names of the file itself come first, then those that its module has in other files, then those of whole modules, and
// last those of where it is included.
Meaning Evaluator::named_at_top(FileId file, Name name, Space space) {
    const LanguageRules& rules = *languages_.rules(file);
    const Container module = catalog_.module_of(file);
    const ModuleRules& modules = languages_.modules(file);
    Meaning found;
    add_members_in(
        catalog_, module, name, [&](FileId of) { return of == file; }, found);
    for (const ImportPlace& place : catalog_.imports(module, name)) {
        const bool is_for_others = catalog_.syntax(place.file).imports[place.import].module == 0;  // `export {a as b}`
        if (place.file == file && !is_for_others) {
            add_once(found, import_meaning(place));
        }
    }
    found = chosen(found, space, rules);
    if (!found.empty() && !(rules.has_macros && may_mean_another(found, space))) {
        return found;
    }
    add_visible(file, module, name, found);
    found = chosen(found, space, rules);
    if (!found.empty()) {
        return found;
    }
    const auto [stars, is_new] = stars_of_files_.try_emplace(file);
    if (is_new) {
        stars->second = leading_apart(catalog_.star_imports_of(file));
    }
    for (const ImportPlace& place : stars->second) {
        add_once(found, members(import_meaning(place), name));
    }
    if (rules.has_no_clashing_stars && !std::ranges::all_of(found, is_foreign)) {
        drop_foreign(found);
    }
    if (found.empty()) {
        add_members_in(
            catalog_, module, name, [&](FileId of) { return modules.sees_where_included(file, of); }, found);
    }
    if (const Container globals = modules.globals(); found.empty() && globals != NONE) {
        add_visible(file, globals, name, found);
    }
    return chosen(found, space, rules);
}

Meaning Evaluator::global(FileId file, const syntax::Expression& name) {
    const Container root = languages_.rules(file) == nullptr ? NONE : languages_.modules(file).root(file);
    return root == NONE ? Meaning()
                        : chosen(exported(root, catalog_.name(file, name.name)), static_cast<Space>(name.b),
                                 *languages_.rules(file));
}

Meaning Evaluator::import_meaning(const ImportPlace& place) {
    return memory_.find({Subject::IMPORT, place.file, place.import}, [&]() -> Meaning {
        const syntax::Import& import = catalog_.syntax(place.file).imports[place.import];
        if (languages_.rules(place.file) == nullptr) {
            return {};
        }
        if (import.module == 0) {  // of the file itself
            return exported(catalog_.module_of(place.file), catalog_.name(place.file, import.original));
        }
        Meaning modules = imported_modules(place, import);
        return import.original == 0 ? modules : members(modules, catalog_.name(place.file, import.original));
    });
}

Meaning Evaluator::imported_modules(const ImportPlace& place, const syntax::Import& import) {
    if (languages_.rules(place.file) == nullptr) {
        return {};
    }
    const Found found = languages_.modules(place.file).find(place.file, import);
    if (found.is_foreign) {
        return {{.what = What::FOREIGN}};
    }
    Meaning modules;
    for (const Container module : found.modules) {
        add_once(modules, Entity{.what = What::MODULE, .id = module});
    }
    for (const std::string& name : found.path) {
        modules = members(modules, catalog_.name(name));
    }
    return modules;
}

// Of imports of all names those that may bring some: of several that lead to the same, the first. Among all #include of
// a program that leaves one that leads out of it.
std::vector<ImportPlace> Evaluator::leading_apart(std::span<const ImportPlace> stars) const {
    std::vector<ImportPlace> apart;
    std::set<std::tuple<bool, std::vector<Container>, std::vector<std::string>, Name>> led_to;
    for (const ImportPlace& place : stars) {
        if (languages_.rules(place.file) == nullptr) {
            continue;
        }
        const syntax::Import& import = catalog_.syntax(place.file).imports[place.import];
        Found found = languages_.modules(place.file).find(place.file, import);
        const bool leads_on = found.is_foreign || !found.modules.empty();
        if (leads_on && led_to
                            .emplace(found.is_foreign, std::move(found.modules), std::move(found.path),
                                     catalog_.name(place.file, import.original))
                            .second) {
            apart.push_back(place);
        }
    }
    return apart;
}

// Whether what an import binds can be imported from where it stands.
bool Evaluator::is_passed_on(const ImportPlace& place) const {
    const LanguageRules* const rules = languages_.rules(place.file);
    return catalog_.syntax(place.file).imports[place.import].is_exported ||
           (rules != nullptr && rules->exports_imports);
}

const std::vector<ImportPlace>& Evaluator::passed_on_stars(Container container) {
    const auto [known, is_new] = passed_on_stars_.try_emplace(container);
    if (is_new) {
        std::vector<ImportPlace> stars;
        std::ranges::copy_if(catalog_.star_imports(container), std::back_inserter(stars),
                             [&](const ImportPlace& place) { return is_passed_on(place); });
        known->second = leading_apart(stars);
    }
    return known->second;
}

// What others can have of a module or namespace by this name.
Meaning Evaluator::exported(Container container, Name name) {
    return name == NONE
               ? Meaning()
               : memory_.find({Subject::EXPORT, container, name}, [&] { return compute_exported(container, name); });
}

// What a module or namespace declares and imports by this name for others.
Meaning Evaluator::own_exports(Container container, Name name) {
    Meaning found;
    for (const Symbol symbol : catalog_.members(container, name)) {
        if (!catalog_.declaration(symbol).is_private) {
            found.push_back(symbol_entity(symbol));
        }
    }
    for (const ImportPlace& place : catalog_.imports(container, name)) {
        if (is_passed_on(place)) {
            add_once(found, import_meaning(place));
        }
    }
    return found;
}

Meaning Evaluator::compute_exported(Container container, Name name) {
    Meaning found = own_exports(container, name);
    const std::span<const FileId> files = catalog_.files_of(container);
    if (found.empty() && !files.empty() && languages_.rules(files.front()) != nullptr) {
        const std::string spelling(catalog_.spelling(name));
        const Container submodule = languages_.modules(files.front()).submodule(container, spelling);
        if (submodule != NONE) {
            return {{.what = What::MODULE, .id = submodule}};
        }
    }
    if (found.empty()) {
        for (const ImportPlace& place : passed_on_stars(container)) {
            add_once(found, members(import_meaning(place), name));
        }
    }
    return found.empty() ? member_of_whole(container, name) : found;
}

// The name under which a module exports what it is as a whole; NONE where none does.
Name Evaluator::name_of_whole(Container module) const {
    const std::span<const FileId> files = catalog_.files_of(module);
    const bool is_known = !files.empty() && languages_.rules(files.front()) != nullptr;
    const std::string_view whole = is_known ? languages_.modules(files.front()).whole() : std::string_view();
    return whole.empty() ? NONE : catalog_.name(whole);
}

// A member of what a module exports as a whole.
Meaning Evaluator::member_of_whole(Container module, Name name) {
    const Name whole = name_of_whole(module);
    return whole == NONE || whole == name ? Meaning() : members(exported(module, whole), name);
}

}  // namespace host::resolve
