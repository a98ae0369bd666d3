#include "host/worktree/source_symbols.h"

#include "host/syntax/type_name.h"
#include "host/text/control_characters.h"
#include "host/worktree/module_names.h"

#include <algorithm>
#include <string_view>

namespace host::worktree {

namespace {

using syntax::Declaration;
using syntax::Syntax;

}  // namespace

SourceSymbols::SourceSymbols(const resolve::Repository& repository)
    : repository_(repository), modules_(module_names(repository)) {
    indexing::SymbolNumber next = 0;
    for (const resolve::File& file : repository.files) {
        first_.push_back(next);
        if (file.syntax == nullptr) {
            continue;
        }
        for (const Declaration& declaration : file.syntax->declarations) {
            if (const std::string_view owner = syntax::type_name(*file.syntax, declaration.owner); !owner.empty()) {
                owners_.emplace(next, owner);
            }
            ++next;
        }
    }
    first_.push_back(next);
}

indexing::SymbolNumber SourceSymbols::number(const resolve::Target& target) const {
    return target.declaration == resolve::Target::MODULE ? first_.back() + target.file
                                                         : first_[target.file] + target.declaration;
}

indexing::DeclarationName SourceSymbols::name_of(indexing::SymbolNumber symbol, std::uint32_t file) const {
    const std::string& module = modules_[file];
    if (symbol >= first_.back()) {
        return {module, without_control_characters(module.empty() ? repository_.files[file].path : module)};
    }
    const Syntax& syntax = *repository_.files[file].syntax;
    std::vector<std::string_view> names;  // from the inside out
    syntax::DeclarationId id = symbol - first_[file];
    while (id != syntax::NO_DECLARATION) {
        const Declaration& declaration = syntax.declarations[id];
        names.push_back(syntax.written_name(declaration));
        if (const auto owner = owners_.find(first_[file] + id); owner != owners_.end()) {
            names.push_back(owner->second);
        }
        id = declaration.parent;
    }
    std::string fqn = module;
    std::ranges::reverse(names);
    for (const std::string_view name : names) {
        fqn.append(fqn.empty() ? "" : ".").append(name);
    }
    return {std::string(names.back()), without_control_characters(fqn)};
}

}  // namespace host::worktree
