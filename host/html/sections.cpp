#include "host/html/sections.h"

#include "host/html/html_text.h"
#include "host/html/prose_html.h"
#include "host/page/citation.h"
#include "host/page/outline.h"
#include "host/page/use_sites.h"
#include "host/text/short_path.h"
#include "utils/saturating.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/file_cards.h"
#include "workers/wiki/scope/neighbours.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

namespace host::html {

namespace {

using models::Text;
using storage::ScopeSymbol;
using wiki::scope::FileCard;

View most_used_view(const FileCard& card, const Links& links) {
    return list_of(card.most_used.shown, [&](const wiki::scope::UsedDeclaration& used) {
        const ScopeSymbol& symbol = *used.declaration;
        View view = declaration_view(symbol, std::string(symbol.name), links);
        view.set("references", text_of(used.references));
        return view;
    });
}

// A file by the end of its path, which tells it from most others; its whole path is there for whoever asks.
View user_view(const Text& path, const Links& links) {
    View view = file_view(path, links);
    view.set("end", text_of(path_html(short_path(path))));
    view.set("whole", text_of(path));
    return view;
}

// All lines of a file, as far as they are known.
std::optional<wiki::scope::LineRange> whole_file(const FileCard& card) {
    constexpr std::int64_t MOST = std::numeric_limits<std::int32_t>::max();
    return card.lines.value_or(0) < 1
               ? std::nullopt
               : std::optional(wiki::scope::LineRange{1, static_cast<std::int32_t>(std::min(*card.lines, MOST))});
}

View card_view(const FileCard& card, const Links& links) {
    return object_of({
        {"citation", citation_view(card.path, whole_file(card), links)},
        {"anchor", text_if_any(card.is_indexed ? links.file(card.path) : "")},
        {"path", text_of(path_html(card.path))},
        {"is_indexed", card.is_indexed},
        {"lines", card.lines ? text_of(*card.lines) : text_of("?")},
        {"declarations", text_of(static_cast<std::int64_t>(card.declarations))},
        {"summary", text_if_any(html_of_markdown(card.summary))},
        {"most_used", most_used_view(card, links)},
        {"has_most_used", !card.most_used.shown.empty()},
        {"most_used_left_out", number_if_any(card.most_used.left_out())},
        {"is_used_inside_only", card.is_used_inside_only},
        {"users_count", text_of(static_cast<std::int64_t>(card.users.total))},
        {"users", list_of(card.users.shown, [&](const auto& user) { return user_view(user.path, links); })},
        {"users_left_out", number_if_any(card.users.left_out())},
        {"tests_count", text_of(static_cast<std::int64_t>(card.tests.total))},
        {"tests", list_of(card.tests.shown, [&](const Text& test) { return user_view(test, links); })},
        {"tests_left_out", number_if_any(card.tests.left_out())},
    });
}

// The references that all consumers make, those that are not shown too.
std::int64_t references_from_outside(const Page& page) {
    const models::TextSet of_page = page.facts.paths();
    std::int64_t outside = 0;
    for (const auto& [target, sources] : wiki::scope::file_users(page.facts)) {
        for (const auto& [source, references] : sources) {
            outside = utils::saturating_sum(outside, of_page.contains(source) ? 0 : references);
        }
    }
    return outside;
}

// The anchors of the declarations by their short names; none for a name that several bear.
using AnchorsByName = std::unordered_map<Text, std::string, models::TextHash>;

AnchorsByName anchors_by_name(const Page& page, const Links& links) {
    AnchorsByName anchors;
    for (const ScopeSymbol& symbol : page.facts.symbols) {
        const auto [anchor, is_first] = anchors.try_emplace(symbol.name);
        anchor->second = is_first ? links.declaration(symbol) : "";
    }
    return anchors;
}

View consumer_view(const wiki::scope::Consumer& consumer, const std::optional<std::int32_t>& first_use,
                   std::int64_t most, std::int64_t all, const AnchorsByName& anchors, const Links& links) {
    return object_of({
        {"first_use", first_use ? site_view(consumer.path, first_use, links) : View(false)},
        {"href", text_if_any(links.address(consumer.path))},
        {"path", text_of(path_html(consumer.path))},
        {"references", text_of(consumer.references)},
        {"bar", text_of(percent_of(consumer.references, most))},
        {"share", text_of(percent_of(consumer.references, all))},
        {"names", list_of(consumer.names.shown,
                          [&](const wiki::scope::UsedName& used) {
                              const auto anchor = anchors.find(used.name);
                              return object_of({{"anchor", text_if_any(anchor == anchors.end() ? "" : anchor->second)},
                                                {"name", text_of(used.name)},
                                                {"references", text_of(used.references)}});
                          })},
        {"names_left_out", number_if_any(consumer.names.left_out())},
    });
}

// The languages, joined by ", ".
std::string joined(const std::vector<Text>& languages) {
    std::string text;
    for (const Text& language : languages) {
        text.append(text.empty() ? "" : ", ").append(language.empty() ? "files of unknown language" : language.view());
    }
    return text;
}

}  // namespace

View file_view(const Text& path, const Links& links) {
    return object_of({{"href", text_if_any(links.address(path))}, {"path", text_of(path_html(path))}});
}

View declaration_view(const ScopeSymbol& symbol, const std::string& name, const Links& links) {
    return object_of({
        {"anchor", text_if_any(links.declaration(symbol))},
        {"name", text_of(name)},
        {"kind", text_of(symbol.kind)},
        {"citation", citation_view(symbol.path, cited_lines(symbol), links)},
        {"line", text_of(std::int64_t{symbol.start_line})},
    });
}

View citation_view(std::string_view path, const std::optional<wiki::scope::LineRange>& lines, const Links& links) {
    return object_of({{"text", text_of(citation(path, lines))}, {"url", text_if_any(links.source(path, lines))}});
}

View site_view(const Text& path, const std::optional<std::int32_t>& line, const Links& links) {
    const std::optional<wiki::scope::LineRange> lines =
        line ? std::optional(wiki::scope::LineRange{*line, *line}) : std::nullopt;
    const std::string url = links.source(path, lines);
    return object_of({{"text", text_of(citation(path, line))},
                      {"url", text_if_any(url)},
                      {"href", text_if_any(url.empty() ? links.address(path) : url)}});
}

std::string percent_of(std::int64_t number, std::int64_t largest) {
    constexpr std::int64_t ALL = 100;
    // What an index was made to say may be more than all, or negative.
    const std::int64_t whole = std::max<std::int64_t>(largest, 1);
    const std::int64_t part = std::clamp<std::int64_t>(number, 0, whole);
    const bool is_small = part <= std::numeric_limits<std::int64_t>::max() / ALL;
    return std::to_string(is_small ? part * ALL / whole : std::min(part / (whole / ALL), ALL));
}

View files_view(const Page& page, const Links& links) {
    const auto cards = wiki::scope::file_cards(page.facts, page.fan_in, page.missing);
    return object_of({{"cards", list_of(cards, [&](const FileCard& card) { return card_view(card, links); })}});
}

View consumers_view(const Page& page, const Links& links) {
    const wiki::scope::Consumers found = consumers_of(page);
    const std::int64_t all = references_from_outside(page);
    const std::int64_t most = found.files.shown.empty() ? 0 : found.files.shown.front().references;
    const std::vector<std::optional<std::int32_t>> first = first_uses(page, found.files.shown);
    const AnchorsByName anchors = anchors_by_name(page, links);
    View files(View::type::list);
    for (std::size_t at = 0; at < first.size(); ++at) {
        files.push_back(consumer_view(found.files.shown[at], first[at], most, all, anchors, links));
    }
    return object_of({
        {"likely", text_if_any(joined(found.unresolved_languages))},
        {"has_files", !found.files.shown.empty()},
        {"files", files},
        {"files_left_out", number_if_any(found.files.left_out())},
        {"has_uncounted", !found.uncounted.empty()},
        {"uncounted", list_of(found.uncounted,
                              [](const auto& uncounted) {
                                  return object_of({{"resolution", text_of(uncounted.resolution)},
                                                    {"references", text_of(uncounted.references)}});
                              })},
        {"uncounted_files", counted_if_any(found.uncounted_files, "file")},
        {"has_unused", !found.unused.shown.empty()},
        {"unused", list_of(found.unused.shown,
                           [&](const ScopeSymbol* symbol) {
                               return declaration_view(*symbol, std::string(symbol->name), links);
                           })},
        {"unused_left_out", number_if_any(found.unused.left_out())},
    });
}

View in_depth_view(const Page& page, const Links& links) {
    // A name that several selected declarations bear leads to none of them.
    std::map<std::string, const ScopeSymbol*> bearers;
    for (const ScopeSymbol* const symbol : page.selection) {
        const auto [bearer, is_first] = bearers.try_emplace(page.names.of(*symbol), symbol);
        bearer->second = is_first ? symbol : nullptr;
    }
    return object_of({{"has_names", !page.deep.empty()},
                      {"names", list_of(page.deep, [&](const Text& name) {
                           const auto bearer = bearers.find(std::string(name));
                           const bool is_known = bearer != bearers.end() && bearer->second != nullptr;
                           const std::string anchor = is_known ? links.declaration(*bearer->second) : "";
                           return object_of({{"anchor", text_if_any(anchor)}, {"name", text_of(name)}});
                       })}});
}

View dependencies_view(const Page& page, const Links& links) {
    const auto matches = wiki::scope::name_match_counts(page.facts);
    return object_of({
        {"has_declarations", !page.neighbours.empty()},
        {"declarations", list_of(page.neighbours,
                                 [&](const wiki::scope::Neighbour& neighbour) {
                                     const ScopeSymbol& target = *neighbour.target;
                                     return object_of({
                                         {"href", text_if_any(links.address(target))},
                                         {"name", text_of(target.name)},
                                         {"kind", text_of(target.kind)},
                                         {"citation", citation_view(target.path, cited_lines(target), links)},
                                         {"references", text_of(neighbour.refs)},
                                     });
                                 })},
        {"has_matches", !matches.empty()},
        {"matches", list_of(matches,
                            [&](const auto& match) {
                                const auto& [files, references] = match;
                                return object_of({{"source", file_view(files.source_path, links)},
                                                  {"target", file_view(files.target_path, links)},
                                                  {"references", text_of(references)}});
                            })},
    });
}

View seeds_view(const Page& page, const Links& links) {
    const auto seeds = wiki::scope::file_seeds(page.facts, page.fan_in);
    return object_of({{"files", list_of(seeds, [&](const auto& seed) {
                           const auto& [path, range] = seed;
                           return object_of({{"citation", citation_view(path, range, links)}});
                       })}});
}

View outline_view(const Page& page, storage::Database& db, const Links& links) {
    return object_of({{"files", list_of(file_outlines(page, db), [&](const FileOutline& file) {
                           View view = file_view(file.path, links);
                           view.set("whole", text_of(file.path));
                           view.set("count", text_of(std::ssize(file.declarations)));
                           view.set("declarations",
                                    list_of(by_lines(file, file.declarations.size()), [&](const auto* declaration) {
                                        const ScopeSymbol& symbol = *declaration->symbol;
                                        const bool has_block = links.has_block(symbol);
                                        const auto lines = cited_lines(symbol);
                                        View row = declaration_view(symbol, std::string(symbol.name), links);
                                        row.set("has_block", has_block);
                                        row.set("href", text_if_any(has_block ? "#" + links.declaration(symbol)
                                                                              : links.source(symbol.path, lines)));
                                        row.set("lines", text_if_any(citation("", lines)));
                                        row.set("signature", text_if_any(declaration->signature));
                                        return row;
                                    }));
                           return view;
                       })}});
}

}  // namespace host::html
