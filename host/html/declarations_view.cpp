// The declarations of a page, each with what its file says of it.
#include "host/html/code_html.h"
#include "host/html/prose_html.h"
#include "host/html/sections.h"
#include "host/page/citation.h"
#include "host/page/selected_declarations.h"
#include "host/page/source_nesting.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace host::html {

namespace {

// The numbers of lines, one below the other.
std::string line_numbers(std::int64_t first, std::size_t count) {
    std::string numbers;
    for (std::size_t line = 0; line < count; ++line) {
        numbers += std::to_string(first + static_cast<std::int64_t>(line)) + "\n";
    }
    return numbers;
}

std::string joined_lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

std::string html_of(std::string_view code, const SelectedDeclaration& declaration) {
    return code_html(code, declaration.language, declaration.symbol->path);
}

View source_view(const SelectedDeclaration& declaration) {
    if (declaration.source.empty()) {
        return false;
    }
    const std::int64_t first = cited_lines(*declaration.symbol).value().first;
    return object_of({
        {"count", text_of(counted(std::ssize(declaration.source), "line"))},
        {"numbers", text_of(line_numbers(first, declaration.source.size()))},
        {"code", text_of(html_of(joined_lines(declaration.source), declaration))},
    });
}

}  // namespace

View declarations_view(const Page& page, storage::Database& db, const Links& links, bool with_source) {
    const std::vector<SelectedDeclaration> declarations = selected_declarations(page, db, with_source);
    const std::vector<std::optional<std::size_t>> around =
        SourceNesting(declarations).printed_around(declarations.size());
    View list(View::type::list);
    for (std::size_t place = 0; place < declarations.size(); ++place) {
        db.check_interrupt();
        const SelectedDeclaration& declaration = declarations[place];
        const storage::ScopeSymbol& symbol = *declaration.symbol;
        View view = declaration_view(symbol, declaration.name, links);
        view.set("outside", text_of(page.fan_in.outside.get(symbol.id, 0)));
        view.set("inside", text_of(page.fan_in.inside.get(symbol.id, 0)));
        view.set("is_entry", page.fan_in.entry.contains(symbol.id));
        view.set("documentation", text_if_any(lead_html(declaration.documentation)));
        view.set("signature", text_if_any(html_of(declaration.signature, declaration)));
        view.set("has_uses", !declaration.uses.shown.empty());
        view.set("uses", list_of(declaration.uses.shown,
                                 [&](const UseSite& site) { return site_view(site.path, site.line, links); }));
        view.set("uses_left_out", counted_if_any(declaration.uses.left_out(), "other file"));
        const SelectedDeclaration* const outer = around[place] ? &declarations[*around[place]] : nullptr;
        view.set("around", outer == nullptr ? View(false) : declaration_view(*outer->symbol, outer->name, links));
        view.set("source", outer == nullptr ? source_view(declaration) : View(false));
        list.push_back(view);
    }
    return object_of({{"has_list", !declarations.empty()}, {"list", list}});
}

}  // namespace host::html
