#include "host/changes/index_state.h"

#include "host/paths/source_folder.h"
#include "host/rules/noted_rules.h"
#include "host/rules/test_paths.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/uses.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace host::changes {

namespace {

template <class Row>
std::vector<RowId> ids_of(const std::vector<Row>& rows) {
    std::vector<RowId> ids;
    ids.reserve(rows.size());
    std::ranges::transform(rows, std::back_inserter(ids), &Row::id);
    return ids;
}

// What a qualified name says that a declaration stands in: "a.b" of "a.b.c".
std::string_view around(const DeclarationState& declaration) {
    const std::string_view fqn = declaration.fqn;
    const std::string_view name = declaration.name;
    const bool is_qualified =
        fqn.size() > name.size() + 1 && fqn.ends_with(name) && fqn[fqn.size() - name.size() - 1] == '.';
    return is_qualified ? fqn.substr(0, fqn.size() - name.size() - 1) : std::string_view();
}

// Stands for a whole file.
constexpr std::string_view MODULE = "module";

bool is_private_name(std::string_view name) {
    return name.starts_with('_') || name.starts_with('#');
}

}  // namespace

NumberById::NumberById(const std::vector<RowId>& ids) {
    rows_.reserve(ids.size());
    for (const RowId id : ids) {
        rows_.emplace_back(id, static_cast<Number>(rows_.size()));
    }
    if (!std::ranges::is_sorted(rows_)) {
        std::ranges::sort(rows_);
    }
}

Number NumberById::find(RowId id) const {
    if (rows_.empty() || id < rows_.front().first) {
        return NONE;
    }
    // Where no id is left out, an id tells its place.
    const std::uint64_t offset = static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(rows_.front().first);
    if (offset < rows_.size() && rows_[offset].first == id) {
        return rows_[offset].second;
    }
    const auto found = std::ranges::lower_bound(rows_, id, {}, &std::pair<RowId, Number>::first);
    return found != rows_.end() && found->first == id ? found->second : NONE;
}

IndexState::IndexState(storage::Database& db, const std::vector<PathRule>& tests)
    : db_(db), sources_(source_checkout("", db)) {
    read_files(tests);
    read_declarations();
    find_members();
    read_uses();
    signatures_.resize(declarations_.size());
}

void IndexState::read_files(const std::vector<PathRule>& tests) {
    const PathRules rules = with_noted_rules(tests, db_);
    const TestRulesInForce in_force(rules, [&] { db_.check_interrupt(); });
    db_.read_files_below("", [&](const FileRow& row) {
        files_.push_back({.id = row.id,
                          .path = std::string(row.path),
                          .content_hash = row.content_hash,
                          .is_test = utils::is_test_path(row.path)});
    });
    file_by_id_ = NumberById(ids_of(files_));
}

void IndexState::read_declarations() {
    db_.read_declarations_in(ids_of(files_), [&](const DeclarationRow& row) {
        if (const Number file = file_by_id_.find(row.file); file != NONE) {
            // Finding the names that several declarations bear would cost more than it saves.
            declarations_.push_back({.id = row.id,
                                     .file = file,
                                     .name = models::Text(row.name),
                                     .fqn = models::Text(row.fqn),
                                     .kind = db_.text(row.kind),
                                     .first_line = row.first_line,
                                     .last_line = row.last_line,
                                     .is_public = row.is_export && !is_private_name(row.name) && row.kind != MODULE});
        }
    });
    std::ranges::sort(declarations_, {}, [](const DeclarationState& each) { return std::pair(each.file, each.id); });
    for (Number at = 0; at < declarations_.size(); ++at) {
        FileState& file = files_[declarations_[at].file];
        file.first_declaration = file.declarations == 0 ? at : file.first_declaration;
        ++file.declarations;
    }
    declaration_by_id_ = NumberById(ids_of(declarations_));
}

// A type of the same file comes before one of another, which must be the only one of its name.
void IndexState::find_members() {
    std::unordered_map<std::string_view, std::vector<Number>> types;
    for (Number at = 0; at < declarations_.size(); ++at) {
        if (wiki::scope::TYPE_KINDS.contains(declarations_[at].kind)) {
            types[declarations_[at].fqn].push_back(at);
        }
    }
    for (DeclarationState& declaration : declarations_) {
        if (const auto found = types.find(around(declaration)); found != types.end()) {
            const auto own = std::ranges::find(found->second, declaration.file,
                                               [&](Number type) { return declarations_[type].file; });
            const bool is_own = own != found->second.end();
            declaration.type = is_own ? *own : found->second.size() == 1 ? found->second.front() : NONE;
        }
    }
    for (DeclarationState& declaration : declarations_) {
        Number type = is_private_name(declaration.name) ? NONE : declaration.type;
        while (type != NONE && !declaration.is_public) {
            declaration.is_public = declarations_[type].is_public;
            type = is_private_name(declarations_[type].name) ? NONE : declarations_[type].type;
        }
    }
}

void IndexState::read_uses() {
    std::unordered_map<RowId, bool> is_evidence;
    db_.read_resolutions(
        [&](const ResolutionRow& row) { is_evidence.emplace(row.id, wiki::scope::use_rules(row.name).is_evidence); });
    db_.read_edges_into(ids_of(declarations_), [&](const EdgeRow& edge) {
        const Number target = declaration_by_id_.find(edge.target);
        const Number source = file_by_id_.find(edge.source);
        const auto evidence = is_evidence.find(edge.resolution);
        if (target != NONE && source != NONE && edge.references > 0) {
            uses_.push_back({.target = target,
                             .source = source,
                             .is_evidence = evidence != is_evidence.end() && evidence->second,
                             .references = edge.references});
        }
    });
    const auto place = [](const Use& use) { return std::tuple(use.target, use.source, !use.is_evidence); };
    if (!std::ranges::is_sorted(uses_, {}, place)) {
        std::ranges::sort(uses_, {}, place);
    }
    first_uses_.reserve(declarations_.size() + 1);
    for (std::size_t use = 0; first_uses_.size() <= declarations_.size(); ++use) {
        while (first_uses_.size() <= declarations_.size() &&
               (use == uses_.size() || first_uses_.size() <= uses_[use].target)) {
            first_uses_.push_back(use);
        }
    }
}

Number IndexState::file_at(std::string_view path) const {
    const auto found = std::ranges::lower_bound(files_, path, {}, &FileState::path);
    return found != files_.end() && found->path == path ? static_cast<Number>(found - files_.begin()) : NONE;
}

std::span<const Use> IndexState::uses_of(Number declaration) const {
    return std::span(uses_).subspan(first_uses_[declaration], first_uses_[declaration + 1] - first_uses_[declaration]);
}

std::span<const Use> IndexState::uses_of_file(Number file) const {
    const Number first = files_[file].first_declaration;
    const Number end = first + files_[file].declarations;
    return std::span(uses_).subspan(first_uses_[first], first_uses_[end] - first_uses_[first]);
}

void IndexState::read_signatures(const std::vector<Number>& files) {
    std::vector<RowId> ids;
    for (const Number file : files) {
        for (Number at = 0; at < files_[file].declarations; ++at) {
            ids.push_back(declarations_[files_[file].first_declaration + at].id);
        }
    }
    db_.read_descriptions(std::move(ids), [&](const DescriptionRow& row) {
        if (const Number number = declaration_by_id_.find(row.declaration); number != NONE) {
            signatures_[number] = row.signature;
        }
    });
}

std::optional<std::vector<std::string>> IndexState::source_of(Number file) const {
    std::optional<FileLines> source = sources_ ? sources_->read_lines(files_[file].path) : std::nullopt;
    return source && source->hash == files_[file].content_hash ? std::optional(std::move(source->lines)) : std::nullopt;
}

}  // namespace host::changes
