#include "host/resolve/doubts.h"

#include <algorithm>

namespace host::resolve {

using syntax::Built;
using syntax::Declaration;
using syntax::Kind;

bool Doubts::is_elsewhere(FileId file, Symbol symbol) const {
    return catalog_.built(symbol) == Built::NEVER ||
           languages_.modules(file).sees_only_elsewhere(file, catalog_.file_of(symbol));
}

bool Doubts::is_substitute(Symbol symbol) const {
    const Symbol around = catalog_.around(symbol);
    return catalog_.declaration(symbol).is_substitute || (around != NONE && catalog_.declaration(around).is_substitute);
}

bool Doubts::is_announced_at_most(Symbol symbol) const {
    return catalog_.built(symbol) == Built::MAYBE && !catalog_.declaration(symbol).is_definition;
}

bool Doubts::announces_first(const Place& token) const {
    const syntax::Expression& expression = catalog_.syntax(token.file).expressions[token.expression];
    if (expression.operation != syntax::Operation::DECLARATION) {
        return false;
    }
    const Symbol symbol = catalog_.symbol(token.file, expression.a);
    const Declaration& declared = catalog_.declaration(symbol);
    const auto is_declared_before = [&](Symbol other) {
        const FileId of = catalog_.file_of(other);
        return of != token.file && catalog_.declaration(other).kind == declared.kind &&
               languages_.modules(token.file).sees(token.file, of);
    };
    return !declared.is_definition && declared.kind == Kind::TYPE &&
           std::ranges::none_of(catalog_.members(catalog_.home_of(symbol), catalog_.name_of(symbol)),
                                is_declared_before);
}

bool Doubts::is_called_type(FileId file, const syntax::Mention& mention, Symbol symbol) const {
    const Kind kind = catalog_.declaration(symbol).kind;
    return mention.role == syntax::Role::CALL && (kind == Kind::TYPE || kind == Kind::ALIAS) &&
           catalog_.file(file).language == "c";
}

}  // namespace host::resolve
