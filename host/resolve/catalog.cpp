#include "host/resolve/catalog.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace host::resolve {

namespace {

// The name under which imports of all names are sorted: no other name has this number.
constexpr Name STAR = NONE - 1;

// What nobody writes: more imports of all names at the top of a file. A name may come from any of them.
constexpr std::size_t MOST_STARS = 1'000;

std::uint64_t key(const ImportPlace& place) {
    return (std::uint64_t{place.file} << 32U) | place.import;
}

// Where each container begins among elements that are sorted by container; one more element holds the end.
std::vector<std::uint32_t> starts(const std::vector<Container>& containers, std::uint32_t count) {
    std::vector<std::uint32_t> first(std::size_t{count} + 1, 0);
    for (const Container container : containers) {
        ++first[std::size_t{container} + 1];
    }
    std::partial_sum(first.begin(), first.end(), first.begin());
    return first;
}

// The elements of one container and name.
template <class Element>
std::span<const Element> part(const std::vector<Element>& elements, const std::vector<Name>& names,
                              const std::vector<std::uint32_t>& first, Container container, Name name) {
    if (container == NONE || name == NONE) {
        return {};
    }
    const auto [begin, end] =
        std::equal_range(names.begin() + first[container], names.begin() + first[container + 1], name);
    return std::span(elements).subspan(static_cast<std::size_t>(begin - names.begin()),
                                       static_cast<std::size_t>(end - begin));
}

}  // namespace

bool may_define(const syntax::Declaration& definition, const syntax::Declaration& announced) {
    const bool states_no_parameters = definition.least_arguments == 0 &&
                                      definition.most_arguments == syntax::Declaration::ANY_NUMBER;  // `int f() {}`
    return definition.is_definition && definition.kind == announced.kind &&
           (definition.kind != syntax::Kind::FUNCTION || states_no_parameters ||
            definition.most_arguments == announced.most_arguments);
}

Catalog::Catalog(const Repository& repository)
    : repository_(repository), modules_of_files_(files(), NONE), is_left_out_(files(), false),
      star_imports_of_files_(files()) {
    static const syntax::Syntax nothing;
    for (FileId file = 0; file < files(); ++file) {
        const syntax::Syntax* const stated = this->file(file).syntax;
        syntaxes_.push_back(stated == nullptr ? &nothing : stated);
        std::vector<Name>& names = names_of_files_.emplace_back();
        names.reserve(syntax(file).names.size());
        for (syntax::NameId each = 0; each < syntax(file).names.size(); ++each) {
            names.push_back(spellings_.add(syntax(file).name(each)));
        }
        first_symbols_.push_back(static_cast<Symbol>(files_of_symbols_.size()));
        files_of_symbols_.insert(files_of_symbols_.end(), syntax(file).declarations.size(), file);
    }
    first_symbols_.push_back(static_cast<Symbol>(files_of_symbols_.size()));
    containers_.assign(symbols(), NONE);
    homes_.assign(symbols(), NONE);
}

Symbol Catalog::around(Symbol symbol) const {
    if (const auto owner = owners_.find(symbol); owner != owners_.end()) {
        return owner->second;
    }
    const syntax::DeclarationId parent = declaration(symbol).parent;
    return parent == syntax::NO_DECLARATION ? NONE : this->symbol(file_of(symbol), parent);
}

Container Catalog::module(const std::string& key) {
    const auto [found, is_new] = modules_.emplace(key, container_count_);
    container_count_ += is_new ? 1 : 0;
    return found->second;
}

Container Catalog::find_module(const std::string& key) const {
    const auto found = modules_.find(key);
    return found == modules_.end() ? NONE : found->second;
}

void Catalog::set_module(FileId file, Container module) {
    modules_of_files_[file] = module;
    files_of_modules_.resize(std::max<std::size_t>(files_of_modules_.size(), std::size_t{module} + 1));
    std::vector<FileId>& files = files_of_modules_[module];
    files.insert(std::ranges::upper_bound(files, file), file);
}

std::span<const FileId> Catalog::files_of(Container module) const {
    return module < files_of_modules_.size() ? std::span<const FileId>(files_of_modules_[module])
                                             : std::span<const FileId>();
}

void Catalog::set_import_name(ImportPlace place, Name name) {
    names_of_imports_[key(place)] = name;
}

void Catalog::set_container(Symbol symbol, Container container) {
    containers_[symbol] = container;
}

Container Catalog::container_in(Container home, Name name, Symbol symbol) {
    if (containers_[symbol] != NONE) {
        return containers_[symbol];
    }
    if (declaration(symbol).kind != syntax::Kind::NAMESPACE || home == NONE) {
        return container_count_++;
    }
    const auto [found, is_new] = namespaces_.emplace((std::uint64_t{home} << 32U) | name, container_count_);
    container_count_ += is_new ? 1 : 0;
    return found->second;
}

void Catalog::link() {
    using syntax::Kind;
    // A declaration stands behind the one around it, so that one's container is known when it comes to this one; an
    // owner may stand anywhere.
    for (Symbol symbol = 0; symbol < symbols(); ++symbol) {
        const syntax::Declaration& stated = declaration(symbol);
        const FileId file = file_of(symbol);
        const bool is_owned = stated.owner != syntax::UNKNOWN;
        const bool is_at_top = stated.parent == syntax::NO_DECLARATION;
        homes_[symbol] = is_owned || stated.is_local ? NONE
                         : is_at_top                 ? module_of(file)
                                                     : containers_[this->symbol(file, stated.parent)];
        if (stated.kind == Kind::TYPE || stated.kind == Kind::NAMESPACE) {
            containers_[symbol] = container_in(homes_[symbol], name_of(symbol), symbol);
        }
    }
    for (const auto& [symbol, type] : owners_) {
        homes_[symbol] = containers_[type];
    }
    link_members();
    link_imports();
}

void Catalog::link_members() {
    struct Member {
        std::uint64_t place;  // the home, and the name in it
        Symbol symbol;
    };
    std::vector<Member> members;
    members.reserve(symbols());
    for (FileId file = 0; file < files(); ++file) {
        Symbol symbol = first_symbols_[file];
        for (const syntax::Declaration& declaration : syntax(file).declarations) {
            if (homes_[symbol] != NONE) {
                members.push_back({(std::uint64_t{homes_[symbol]} << 32U) | name(file, declaration.name), symbol});
            }
            ++symbol;
        }
    }
    std::ranges::sort(members, {}, [](const Member& each) { return std::pair(each.place, each.symbol); });
    members_.clear();
    member_names_.clear();
    std::vector<Container> containers;
    for (const Member& member : members) {
        members_.push_back(member.symbol);
        member_names_.push_back(static_cast<Name>(member.place));
        containers.push_back(static_cast<Container>(member.place >> 32U));
    }
    first_members_ = starts(containers, container_count_);
    link_announcements();
}

void Catalog::link_announcements() {
    alike_ = members_;
    definitions_.clear();
    definition_names_.clear();
    for (std::size_t begin = 0, end = 0; begin < members_.size(); begin = end) {
        const auto is_of_the_name = [&](std::size_t at) {
            return member_names_[at] == member_names_[begin] && homes_[members_[at]] == homes_[members_[begin]];
        };
        bool has_announcements = false;
        for (end = begin; end < members_.size() && is_of_the_name(end); ++end) {
            has_announcements = has_announcements || !declaration(members_[end]).is_definition;
        }
        if (has_announcements) {
            link_announcements(begin, end);
        }
    }
    std::vector<Container> containers;
    for (const Symbol symbol : definitions_) {
        containers.push_back(homes_[symbol]);
    }
    first_definitions_ = starts(containers, container_count_);
}

// Links the announcements among all members of one name.
void Catalog::link_announcements(std::size_t begin, std::size_t end) {
    const std::size_t first_definition = definitions_.size();
    for (std::size_t at = begin; at < end; ++at) {
        if (declaration(members_[at]).is_definition) {
            definitions_.push_back(members_[at]);
            definition_names_.push_back(member_names_[at]);
        }
    }
    const auto definitions = std::span(definitions_).subspan(first_definition);
    std::vector<Symbol> firsts;  // of those that are alike
    for (std::size_t at = begin; at < end; ++at) {
        const Symbol symbol = members_[at];
        const syntax::Declaration& announced = declaration(symbol);
        const auto is_defined = [&](bool is_private) {
            return std::ranges::any_of(definitions, [&](Symbol each) {
                const bool is_of_the_file = !is_private || file_of(each) == file_of(symbol);
                return declaration(each).is_private == is_private && is_of_the_file &&
                       may_define(declaration(each), announced);
            });
        };
        if (announced.is_definition || is_defined(true) || !is_defined(false)) {
            continue;
        }
        const auto first = std::ranges::find_if(firsts, [&](Symbol each) {
            return declaration(each).kind == announced.kind && built(each) == built(symbol) &&
                   declaration(each).most_arguments == announced.most_arguments;
        });
        if (first == firsts.end()) {
            firsts.push_back(symbol);
        } else {
            alike_[at] = *first;
        }
    }
}

void Catalog::link_imports() {
    struct Entry {
        Container container;
        Name name;
        ImportPlace place;
    };
    std::vector<Entry> entries;
    for (FileId file = 0; file < files(); ++file) {
        const std::vector<syntax::Import>& imports = syntax(file).imports;
        std::vector<ImportPlace>& stars = star_imports_of_files_[file];
        stars.clear();
        for (std::uint32_t at = 0; at < imports.size(); ++at) {
            const syntax::Import& import = imports[at];
            const bool is_at_top = import.around == syntax::NO_DECLARATION;
            const Container container = is_at_top ? module_of(file) : containers_[symbol(file, import.around)];
            if (import.is_in_function || (import.is_star && stars.size() >= MOST_STARS)) {
                continue;
            }
            if (container != NONE) {
                entries.push_back({container, bound_name({file, at}), {file, at}});
            }
            if (import.is_star && is_at_top) {
                stars.push_back({file, at});
            }
        }
    }
    std::ranges::stable_sort(entries, {}, [](const Entry& entry) { return std::tuple(entry.container, entry.name); });
    imports_.clear();
    import_names_.clear();
    std::vector<Container> containers;
    for (const Entry& entry : entries) {
        imports_.push_back(entry.place);
        import_names_.push_back(entry.name);
        containers.push_back(entry.container);
    }
    first_imports_ = starts(containers, container_count_);
}

// The name that an import binds; STAR for all names of a module.
Name Catalog::bound_name(const ImportPlace& place) const {
    const syntax::Import& import = syntax(place.file).imports[place.import];
    const auto stated = names_of_imports_.find(key(place));
    return import.is_star ? STAR : stated == names_of_imports_.end() ? name(place.file, import.name) : stated->second;
}

std::span<const Symbol> Catalog::members(Container container, Name name) const {
    return part(members_, member_names_, first_members_, container, name);
}

std::span<const Symbol> Catalog::alike(Container container, Name name) const {
    return part(alike_, member_names_, first_members_, container, name);
}

std::span<const Symbol> Catalog::definitions(Container container, Name name) const {
    return part(definitions_, definition_names_, first_definitions_, container, name);
}

std::span<const ImportPlace> Catalog::imports(Container container, Name name) const {
    return part(imports_, import_names_, first_imports_, container, name);
}

std::span<const ImportPlace> Catalog::star_imports(Container container) const {
    return part(imports_, import_names_, first_imports_, container, STAR);
}

}  // namespace host::resolve
