#include "host/worktree/source_facts.h"

#include "host/files/checkout.h"
#include "host/files/file_language.h"
#include "host/sources/outline.h"
#include "host/summary/text_summary.h"
#include "host/syntax/surface.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace host::worktree {

namespace {

using sources::Outline;
using sources::SourceDeclaration;
using syntax::Declaration;
using syntax::Kind;
using syntax::Syntax;

bool is_member_of_type(const Declaration& declaration, const Syntax& syntax) {
    return declaration.owner != syntax::UNKNOWN ||
           (declaration.parent != syntax::NO_DECLARATION && syntax.declarations[declaration.parent].kind == Kind::TYPE);
}

// The kind of a declaration whose kind the source leaves open, as of most variables, and of `void A::f() {}`.
std::string_view open_kind(const SourceDeclaration& outlined, Kind kind, bool is_member) {
    if (kind == Kind::FUNCTION) {
        return is_member ? "method" : "function";
    }
    if (is_member) {
        return "attribute";
    }
    if (outlined.is_callable) {
        return "function";
    }
    const bool is_loud =
        std::ranges::none_of(outlined.name, [](char character) { return 'a' <= character && character <= 'z'; });
    return is_loud || outlined.is_constant ? "constant" : "variable";
}

std::vector<DeclarationFacts> declarations_in(Outline& outline) {
    const Syntax& syntax = *outline.syntax;
    std::unordered_map<std::uint32_t, syntax::DeclarationId> ids;  // by offset
    for (syntax::DeclarationId id = 0; id < syntax.declarations.size(); ++id) {
        if (!syntax.declarations[id].is_hidden) {
            ids.emplace(syntax.declarations[id].offset, id);
        }
    }
    std::vector<DeclarationFacts> declarations;
    for (SourceDeclaration& outlined : outline.declarations) {
        const auto found = ids.find(outlined.offset);
        if (found == ids.end() || syntax.declarations[found->second].is_in_test ||
            outline.is_in_test(outlined.first_line)) {
            continue;
        }
        const bool is_member = is_member_of_type(syntax.declarations[found->second], syntax);
        declarations.push_back({.id = found->second,
                                .kind = outlined.kind.empty()
                                            ? open_kind(outlined, syntax.declarations[found->second].kind, is_member)
                                            : outlined.kind,
                                .lines = {outlined.first_line, outlined.last_line},
                                .is_public = outlined.is_public && !is_member,
                                .signature = std::move(outlined.signature),
                                .documentation = std::move(outlined.documentation)});
    }
    std::ranges::stable_sort(declarations, {}, [](const DeclarationFacts& each) { return each.lines.first; });
    return declarations;
}

}  // namespace

SourceFacts facts_of_name(std::string_view path) {
    SourceFacts facts;
    facts.language = usual_language(path);
    facts.dialect = usual_dialect(path) == "tsx" ? "tsx" : facts.language;
    return facts;
}

SourceFacts facts_of(std::string_view text, const std::string& path, const std::atomic<bool>& is_cancelled) {
    SourceFacts facts = facts_of_name(path);
    facts.summary = text_summary(text);
    std::optional<Outline> outline = sources::outline_of(text, "", path, is_cancelled, sources::Content::NAMES);
    if (!outline) {
        return facts;
    }
    if (outline->is_cpp) {
        facts.language = facts.dialect = "cpp";
    }
    facts.line_count = outline->line_count;
    facts.is_parsed = true;
    facts.is_damaged = outline->is_damaged;
    if (outline->syntax) {
        facts.declarations = declarations_in(*outline);
        facts.syntax = std::move(*outline->syntax);
    }
    return facts;
}

SourceFacts surface_of(const SourceFacts& facts) {
    SourceFacts surface{.language = facts.language,
                        .dialect = facts.dialect,
                        .summary = facts.summary,
                        .is_parsed = facts.is_parsed,
                        .is_damaged = facts.is_damaged,
                        .declarations = {},
                        .syntax = syntax::surface_of(facts.syntax)};
    for (const DeclarationFacts& each : facts.declarations) {
        surface.declarations.push_back({.id = each.id,
                                        .kind = each.kind,
                                        .lines = {},
                                        .is_public = each.is_public,
                                        .signature = {},
                                        .documentation = {}});
    }
    return surface;
}

std::vector<std::string_view> kinds_of_declarations() {
    return {"class",  "struct",      "interface", "enum",     "type",    "function",
            "method", "constructor", "attribute", "constant", "variable"};
}

}  // namespace host::worktree
