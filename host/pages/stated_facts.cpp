#include "host/pages/stated_facts.h"

#include "host/page/citation.h"
#include "host/page/doc_comment.h"
#include "host/page/flowchart.h"
#include "host/page/outline.h"
#include "host/page/selected_declarations.h"
#include "host/page/use_sites.h"
#include "host/pages/digest.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/file_cards.h"

#include <nlohmann/json.hpp>

#include <iterator>
#include <optional>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace host::pages {

namespace {

namespace scope = wiki::scope;
using models::Text;

// The keys of the subjects in JSON.
constexpr std::array<const char*, SUBJECTS.size()> KEYS{"page",   "files",        "declarations", "consumers",
                                                        "unused", "dependencies", "name_matches"};

// Texts one after the other, so that two lists give one text only if they are equal.
class Listing {
  public:
    Listing& add(std::string_view text) {
        all_.append(std::to_string(text.size())).append(":").append(text);
        return *this;
    }
    Listing& add(std::int64_t number) { return add(std::to_string(number)); }
    Listing& add(std::size_t number) { return add(std::to_string(number)); }

    // Empty for nothing.
    [[nodiscard]] std::string digest() const { return all_.empty() ? "" : digest_of(all_); }

  private:
    std::string all_;
};

std::string digest_of_text(std::string_view text) {
    return text.empty() ? "" : digest_of(text);
}

template <class Element, class Add>
std::string digest_of_excerpt(const models::Excerpt<Element>& excerpt, Add add) {
    Listing listing;
    for (const Element& element : excerpt.shown) {
        add(listing, element);
    }
    return excerpt.total == 0 ? "" : listing.add(excerpt.total).digest();
}

std::string range_of(const scope::ScopeSymbol& symbol) {
    const std::optional<scope::LineRange> range = cited_lines(symbol);
    return range ? std::to_string(range->first) + "-" + std::to_string(range->last) : "";
}

// What the sections of a page state, one after the other.
class FactsReader {
  public:
    FactsReader(const std::string& title, const RequestedPage& page, storage::Database& db)
        : request_(page.request()), page_(page.page()), db_(db), about_page_(aspect::GRAPH + 1) {
        about_page_[aspect::TITLE] = title;
        about_page_[aspect::OPTIONS] = digest_of_options(page.source_links());
    }

    StatedFacts read() {
        for (const Section section : SECTIONS) {
            db_.check_interrupt();
            if (request_.only.contains(section)) {
                read_section(section);
            }
        }
        facts_.about(Subject::PAGE).push_back({.values = std::move(about_page_)});
        return std::move(facts_);
    }

  private:
    void read_section(Section section) {
        switch (section) {
        case Section::FILES:
            read_files();
            break;
        case Section::CONSUMERS:
            read_consumers();
            break;
        case Section::DECLARATIONS:
            read_declarations();
            break;
        case Section::IN_DEPTH:
            read_names_in_depth();
            break;
        case Section::DEPENDENCIES:
            read_dependencies();
            break;
        case Section::GRAPH:
            about_page_[aspect::GRAPH] = digest_of_text(flowchart(page_).source);
            break;
        case Section::SEEDS:
            read_seeds();
            break;
        case Section::OUTLINE:
            read_outlines();
            break;
        }
    }

    // What the request leaves out of a page, and where its citations lead. How much is chosen shows in what the page
    // states.
    [[nodiscard]] std::string digest_of_options(const SourceLinks* links) const {
        Listing listing;
        for (const Section section : SECTIONS) {
            listing.add(request_.only.contains(section) ? name_of(section) : "");
        }
        return listing.add(request_.max_bytes.value_or(0))
            .add(request_.max_tokens.value_or(0))
            .add(request_.with_source ? "with source" : "")
            .add(links == nullptr ? "" : links->url.of(links->commit, "", 0, 0))
            .digest();
    }

    // The statement about a file. Sections state different things about one.
    std::vector<std::string>& about_file(const Text& path) {
        const auto [place, is_new] = files_.emplace(std::string(path), facts_.about(Subject::FILE).size());
        if (is_new) {
            facts_.about(Subject::FILE)
                .push_back({.name = std::string(path), .values = std::vector<std::string>(aspect::OUTLINE + 1)});
        }
        return facts_.about(Subject::FILE)[place->second].values;
    }

    void read_files() {
        for (const scope::FileCard& card : scope::file_cards(page_.facts, page_.fan_in, page_.missing)) {
            std::vector<std::string>& values = about_file(card.path);
            values[aspect::LINES] = card.lines ? std::to_string(*card.lines) : "";
            values[aspect::DECLARATIONS] = card.is_indexed ? std::to_string(card.declarations) : "";
            values[aspect::SUMMARY] = digest_of_text(card.summary);
            values[aspect::MOST_USED] =
                digest_of_excerpt(card.most_used, [&](Listing& listing, const scope::UsedDeclaration& used) {
                    listing.add(used.declaration->name)
                        .add(std::int64_t{used.declaration->start_line})
                        .add(used.references)
                        .add(card.is_used_inside_only ? "inside" : "");
                });
            values[aspect::FILE_USERS] = digest_of_excerpt(
                card.users, [](Listing& listing, const scope::FileUser& user) { listing.add(user.path); });
            values[aspect::TESTS] =
                digest_of_excerpt(card.tests, [](Listing& listing, const Text& test) { listing.add(test); });
        }
    }

    void read_consumers() {
        const scope::Consumers consumers = consumers_of(page_);
        about_page_[aspect::USERS] = std::to_string(consumers.files.total);
        about_page_[aspect::UNUSED_TOTAL] = std::to_string(consumers.unused.total);
        const std::vector<std::optional<std::int32_t>> lines = first_uses(page_, consumers.files.shown);
        for (std::size_t at = 0; at < lines.size(); ++at) {
            const scope::Consumer& consumer = consumers.files.shown[at];
            const std::string names = digest_of_excerpt(
                consumer.names, [](Listing& listing, const scope::UsedName& used) { listing.add(used.name); });
            facts_.about(Subject::CONSUMER)
                .push_back({.name = std::string(consumer.path),
                            .values = {Listing().add(consumer.references).add(names).digest(),
                                       lines[at] ? std::to_string(*lines[at]) : ""}});
        }
        for (const scope::ScopeSymbol* const symbol : consumers.unused.shown) {
            facts_.about(Subject::UNUSED)
                .push_back({.name = std::string(symbol->name),
                            .path = std::string(symbol->path),
                            .values = {std::string(symbol->kind) + " " + std::to_string(symbol->start_line)}});
        }
        Listing uncounted;
        for (const auto& [resolution, references] : consumers.uncounted) {
            uncounted.add(resolution).add(references);
        }
        about_page_[aspect::UNCOUNTED] = uncounted.add(consumers.uncounted_files).digest();
        Listing unresolved;
        for (const Text& language : consumers.unresolved_languages) {
            unresolved.add(language);
        }
        about_page_[aspect::UNRESOLVED] = unresolved.digest();
    }

    void read_declarations() {
        for (const SelectedDeclaration& selected : selected_declarations(page_, db_, request_.with_source)) {
            const scope::ScopeSymbol& symbol = *selected.symbol;
            const bool has_code = !selected.signature.empty() || !selected.source.empty();
            Listing source;
            for (const std::string& line : selected.source) {
                source.add(line);
            }
            facts_.about(Subject::DECLARATION)
                .push_back(
                    {.name = selected.name,
                     .path = std::string(symbol.path),
                     .values = {std::string(symbol.kind), has_code ? selected.language : "",
                                digest_of_text(selected.signature), digest_of_text(lead_of(selected.documentation)),
                                source.digest(), range_of(symbol),
                                std::to_string(page_.fan_in.outside.get(symbol.id, 0)) + "+" +
                                    std::to_string(page_.fan_in.inside.get(symbol.id, 0)),
                                digest_of_excerpt(selected.uses, [](Listing& listing, const UseSite& use) {
                                    listing.add(use.path).add(std::to_string(use.line.value_or(0)));
                                })}});
        }
    }

    void read_names_in_depth() {
        Listing names;
        for (const Text& name : page_.deep) {
            names.add(name);
        }
        about_page_[aspect::IN_DEPTH] = names.digest();
    }

    void read_dependencies() {
        for (const auto& [target, references] : page_.neighbours) {
            facts_.about(Subject::DEPENDENCY)
                .push_back(
                    {.name = std::string(target->name),
                     .path = std::string(target->path),
                     .values = {std::string(target->kind) + " " + range_of(*target), std::to_string(references)}});
        }
        for (const auto& [files, references] : name_match_counts(page_.facts)) {
            facts_.about(Subject::NAME_MATCH)
                .push_back({.name = std::string(files.source_path),
                            .path = std::string(files.target_path),
                            .values = {std::to_string(references)}});
        }
    }

    void read_seeds() {
        for (const auto& [path, range] : file_seeds(page_.facts, page_.fan_in)) {
            about_file(path)[aspect::SEED] = std::to_string(range.first) + "-" + std::to_string(range.last);
        }
    }

    void read_outlines() {
        for (const FileOutline& file : file_outlines(page_, db_)) {
            Listing outline;
            outline.add(file.lines.value_or(-1));
            for (const OutlinedDeclaration* const declaration : by_lines(file, file.declarations.size())) {
                outline.add(declaration->symbol->name)
                    .add(declaration->symbol->kind)
                    .add(range_of(*declaration->symbol))
                    .add(declaration->signature);
            }
            if (request_.max_bytes || request_.max_tokens) {  // their ranks decide what is left out
                for (const OutlinedDeclaration& declaration : file.declarations) {
                    outline.add(range_of(*declaration.symbol));
                }
            }
            about_file(file.path)[aspect::OUTLINE] = outline.digest();
        }
        for (const std::string& path : page_.missing) {
            about_file(Text(path));
        }
    }

    const PageRequest& request_;
    const Page& page_;
    storage::Database& db_;
    StatedFacts facts_;
    std::vector<std::string> about_page_;
    std::unordered_map<std::string, std::size_t> files_;  // path -> place of its statement
};

// A statement as an array: name, path, and the values.
std::vector<std::string> row_of(const Statement& statement) {
    std::vector<std::string> row{statement.name, statement.path};
    row.insert(row.end(), statement.values.begin(), statement.values.end());
    return row;
}

Statement statement_of(const nlohmann::json& row) {
    std::vector<std::string> texts = row.get<std::vector<std::string>>();
    if (texts.size() < 2) {
        throw std::runtime_error("a statement without name and path");
    }
    return {.name = std::move(texts[0]),
            .path = std::move(texts[1]),
            .values = {std::make_move_iterator(texts.begin() + 2), std::make_move_iterator(texts.end())}};
}

}  // namespace

StatedFacts stated_facts(const std::string& title, const RequestedPage& page, storage::Database& db) {
    return FactsReader(title, page, db).read();
}

std::string to_json(const StatedFacts& facts) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const Subject subject : SUBJECTS) {
        nlohmann::json rows = nlohmann::json::array();
        for (const Statement& statement : facts.about(subject)) {
            rows.push_back(row_of(statement));
        }
        json[KEYS.at(static_cast<std::size_t>(subject))] = rows;
    }
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

StatedFacts read_facts(std::string_view json_text) {
    try {
        const nlohmann::json json = nlohmann::json::parse(json_text);
        StatedFacts facts;
        for (const Subject subject : SUBJECTS) {
            for (const nlohmann::json& row : json.at(KEYS.at(static_cast<std::size_t>(subject)))) {
                facts.about(subject).push_back(statement_of(row));
            }
        }
        return facts;
    } catch (const nlohmann::json::exception& error) {
        throw std::runtime_error(error.what());
    }
}

}  // namespace host::pages
