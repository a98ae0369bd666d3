#include "host/syntax/syntax_builder.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace host::syntax {

namespace {

std::size_t mixed(std::uint64_t value) {
    value ^= value >> 32U;
    value *= 0x9E37'79B9'7F4A'7C15U;
    return static_cast<std::size_t>(value ^ (value >> 29U));
}

std::size_t hash_of(std::string_view name) {
    return std::hash<std::string_view>()(name);
}

std::size_t hash_of(const Expression& expression) {
    const std::uint64_t first = (std::uint64_t{expression.a} << 32U) | expression.b;
    const std::uint64_t second =
        (std::uint64_t{expression.name} << 8U) | static_cast<std::uint64_t>(expression.operation);
    return mixed(first + mixed(second));
}

// Of mentions that are counted together.
std::size_t hash_of(const Mention& mention) {
    return mixed((std::uint64_t{mention.expression} << 24U) | (static_cast<std::uint64_t>(mention.role) << 16U) |
                 (static_cast<std::uint64_t>(mention.built) << 8U) | mention.arguments);
}

bool are_counted_together(const Mention& one, const Mention& other) {
    return one.expression == other.expression && one.role == other.role && one.built == other.built &&
           one.arguments == other.arguments;
}

// Whether a local with this value is another name of something that files declare.
bool stands_for_a_declaration(const Expression& value) {
    return value.operation == Operation::IMPORT || value.operation == Operation::DECLARATION;
}

}  // namespace

SyntaxBuilder::SyntaxBuilder(Visibility visibility) : visibility_(visibility) {
    name("");
    lists_.emplace(std::vector<ExpressionId>(), 0);
    add(Expression());
}

NameId SyntaxBuilder::name(std::string_view text) {
    const auto [id, is_new] = names_.number(
        hash_of(text), [&](NameId each) { return syntax_.names[each] == text; },
        [&](NameId each) { return hash_of(syntax_.names[each]); });
    if (is_new && id > 0) {  // the empty name is there
        syntax_.names.add(text);
    }
    return id;
}

std::optional<NameId> SyntaxBuilder::known_name(std::string_view text) const {
    return names_.find(hash_of(text), [&](NameId each) { return syntax_.names[each] == text; });
}

ListId SyntaxBuilder::list(std::span<const ExpressionId> expressions) {
    const auto [found, is_new] =
        lists_.emplace(std::vector(expressions.begin(), expressions.end()), static_cast<ListId>(syntax_.lists.size()));
    if (is_new) {
        syntax_.lists.push_back(static_cast<std::uint32_t>(expressions.size()));
        syntax_.lists.insert(syntax_.lists.end(), expressions.begin(), expressions.end());
    }
    return found->second;
}

ExpressionId SyntaxBuilder::add(const Expression& expression) {
    const auto [id, is_new] = expressions_.number(
        hash_of(expression), [&](ExpressionId each) { return syntax_.expressions[each] == expression; },
        [&](ExpressionId each) { return hash_of(syntax_.expressions[each]); });
    if (is_new && id != UNKNOWN) {  // which is there
        syntax_.expressions.push_back(expression);
    }
    return id;
}

ExpressionId SyntaxBuilder::instance(ExpressionId type) {
    return type == UNKNOWN ? UNKNOWN : add(Operation::INSTANCE, type);
}

ExpressionId SyntaxBuilder::one_of(std::span<const ExpressionId> expressions) {
    std::vector<ExpressionId> different;
    std::unordered_set<ExpressionId> seen{UNKNOWN};
    for (const ExpressionId each : expressions) {
        if (seen.insert(each).second) {
            different.push_back(each);
        }
    }
    if (different.size() <= 1) {
        return different.empty() ? UNKNOWN : different.front();
    }
    return add(Operation::ONE_OF, list(different));
}

ExpressionId SyntaxBuilder::look_up(std::string_view name, Space space) {
    const NameId id = this->name(name);
    return look_up(id, visible_local(id), space);
}

ExpressionId SyntaxBuilder::look_up(NameId name, const Local* local, Space space) {
    if (local != nullptr) {
        return local->values.back();
    }
    if (visibility_ == Visibility::FROM_DECLARATION) {
        return add({Operation::NAME, around(), static_cast<std::uint32_t>(space), name});
    }
    const Expression expression{Operation::NAME, static_cast<std::uint32_t>(scope_), static_cast<std::uint32_t>(space),
                                name};
    const std::size_t before = syntax_.expressions.size();
    const ExpressionId added = add(expression);
    if (syntax_.expressions.size() > before) {
        unsettled_.push_back(added);
    }
    return added;
}

ExpressionId SyntaxBuilder::use(const Token& token) {
    const NameId id = name(token.name);
    const Local* const local = visible_local(id);
    const ExpressionId expression = look_up(id, local, token.space);
    if (local == nullptr || stands_for_a_declaration(syntax_.expressions[expression])) {
        mention(expression, token);
    }
    return expression;
}

ExpressionId SyntaxBuilder::use_member(ExpressionId of, const Token& token) {
    const ExpressionId expression =
        add({Operation::MEMBER, of, static_cast<std::uint32_t>(token.space), name(token.name)});
    mention(expression, token);
    return expression;
}

void SyntaxBuilder::mention(ExpressionId expression, const Token& token) {
    const Mention first{.expression = expression,
                        .role = token.role,
                        .built = built_at_line(token.line),
                        .arguments = token.arguments,
                        .count = 0,
                        .line = token.line};
    const auto [number, is_new] = mentions_.number(
        hash_of(first), [&](std::uint32_t each) { return are_counted_together(syntax_.mentions[each], first); },
        [&](std::uint32_t each) { return hash_of(syntax_.mentions[each]); });
    if (is_new) {
        syntax_.mentions.push_back(first);
    }
    Mention& mention = syntax_.mentions[number];
    ++mention.count;
    mention.line = std::min(mention.line, token.line);
    places_.push_back({number, {token.offset, token.line}});
}

void SyntaxBuilder::open(DeclarationId declaration) {
    scopes_.push_back({.parent = scope_, .declaration = declaration});
    scope_ = scopes_.size() - 1;
}

void SyntaxBuilder::open_local() {
    scopes_.push_back({.parent = scope_, .declaration = around(), .is_local = true});
    scope_ = scopes_.size() - 1;
}

void SyntaxBuilder::close() {
    const std::size_t parent = scopes_[scope_].parent;
    if (visibility_ == Visibility::FROM_DECLARATION) {
        scopes_.resize(scope_);  // nothing asks for it any more
    }
    scope_ = parent;
}

void SyntaxBuilder::bind(std::string_view name, ExpressionId value) {
    bind_in(0, name, value);
}

void SyntaxBuilder::bind_in(std::size_t outward, std::string_view name, ExpressionId value) {
    std::size_t scope = scope_;
    while (scope != 0 && (!scopes_[scope].is_local || outward > 0)) {
        outward -= scopes_[scope].is_local ? 1 : 0;
        scope = scopes_[scope].parent;
    }
    if (scope != 0) {
        scopes_[scope].locals[this->name(name)].values.push_back(value);
    }
}

void SyntaxBuilder::release(std::string_view name) {
    scopes_[scope_].locals[this->name(name)].is_released = true;
}

bool SyntaxBuilder::is_bound(std::string_view name) const {
    const std::optional<NameId> known = known_name(name);
    return known && scopes_[scope_].locals.contains(*known);
}

bool SyntaxBuilder::is_local(std::string_view name) const {
    const std::optional<NameId> known = known_name(name);
    return known && find_local(scope_, *known) != nullptr;
}

std::size_t SyntaxBuilder::local_depth() const {
    std::size_t depth = 0;
    for (std::size_t scope = scope_; scope != 0; scope = scopes_[scope].parent) {
        depth += scopes_[scope].is_local ? 1 : 0;
    }
    return depth;
}

DeclarationId SyntaxBuilder::around() const {
    return scopes_[scope_].declaration;
}

DeclarationId SyntaxBuilder::declare(Declaration declaration) {
    declaration.built = built_before(std::ranges::upper_bound(regions_, declaration.offset, {}, &Region::begin));
    syntax_.declarations.push_back(declaration);
    return static_cast<DeclarationId>(syntax_.declarations.size() - 1);
}

std::uint32_t SyntaxBuilder::import(Import import) {
    syntax_.imports.push_back(import);
    return static_cast<std::uint32_t>(syntax_.imports.size() - 1);
}

Built SyntaxBuilder::built_at_line(std::uint32_t line) const {
    return built_before(std::ranges::upper_bound(regions_, line, {}, &Region::first_line));
}

// Of the region before another.
Built SyntaxBuilder::built_before(std::vector<Region>::const_iterator next) const {
    return next == regions_.begin() ? Built::ALWAYS : std::prev(next)->built;
}

Syntax SyntaxBuilder::finish() {
    if (visibility_ == Visibility::WHOLE_SCOPE) {
        settle_names();
        settle_mentions();
    }
    add_places();
    std::erase_if(syntax_.mentions, [](const Mention& mention) { return mention.count == 0; });
    syntax_.names.shrink_to_fit();
    syntax_.expressions.shrink_to_fit();
    syntax_.lists.shrink_to_fit();
    syntax_.declarations.shrink_to_fit();
    syntax_.imports.shrink_to_fit();
    syntax_.mentions.shrink_to_fit();
    return std::move(syntax_);
}

const SyntaxBuilder::Local* SyntaxBuilder::visible_local(NameId name) const {
    return visibility_ == Visibility::FROM_DECLARATION ? find_local(scope_, name) : nullptr;
}

// Null where the name is no local.
const SyntaxBuilder::Local* SyntaxBuilder::find_local(std::size_t scope, NameId name) const {
    for (; scope != 0; scope = scopes_[scope].parent) {
        const auto found = scopes_[scope].locals.find(name);
        if (found != scopes_[scope].locals.end() && !found->second.is_released) {
            return &found->second;
        }
    }
    return nullptr;
}

ExpressionId SyntaxBuilder::value_of(const Local& local) {
    // A value of which nothing is known may be any: what is known of the others does not hold for it.
    const bool is_known = std::ranges::find(local.values, UNKNOWN) == local.values.end();
    return is_known ? one_of(local.values) : UNKNOWN;
}

// Gives each name the declaration around it, and has one that names a local be what that is.
void SyntaxBuilder::settle_names() {
    std::unordered_map<const Local*, ExpressionId> values;  // of many assignments, named in many scopes
    for (const ExpressionId id : unsettled_) {
        const Expression name = syntax_.expressions[id];
        if (const Local* const local = find_local(name.a, name.name)) {
            const auto [value, is_new] = values.try_emplace(local, UNKNOWN);
            if (is_new) {
                value->second = value_of(*local);
            }
            syntax_.expressions[id] = {.operation = Operation::LOCAL, .a = value->second};
        } else {
            syntax_.expressions[id].a = scopes_[name.a].declaration;
        }
    }
}

// Has mentions of locals be of what these stand for, or count nothing.
void SyntaxBuilder::settle_mentions() {
    for (Mention& mention : syntax_.mentions) {
        const Expression& expression = syntax_.expressions[mention.expression];
        if (expression.operation == Operation::LOCAL && stands_for_a_declaration(syntax_.expressions[expression.a])) {
            mention.expression = expression.a;
        } else if (expression.operation == Operation::LOCAL) {
            mention.count = 0;
        }
    }
}

// Orders the places of tokens by their mentions.
void SyntaxBuilder::add_places() {
    std::vector<std::size_t> next;  // by mention: where its next token goes
    std::size_t tokens = 0;
    for (const Mention& mention : syntax_.mentions) {
        next.push_back(tokens);
        tokens += mention.count;
    }
    syntax_.places.resize(tokens);
    for (const auto& [mention, place] : places_) {
        if (syntax_.mentions[mention].count > 0) {
            syntax_.places[next[mention]++] = place;
        }
    }
}

}  // namespace host::syntax
