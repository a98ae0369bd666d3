// Reads an index, wherever it is stored.
#pragma once

#include "host/index/declaration_table.h"
#include "host/index/edges.h"
#include "host/index/rows.h"
#include "models/ordered_map.h"
#include "models/text.h"
#include "storage/database.h"
#include "storage/grounding_queries.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host {

/// Called with rows one by one; their texts are valid during the call. It must not read from the database that calls
/// it: one query ends before the next begins.
template <class Row>
using OnRow = std::function<void(const Row&)>;

/// Where an index comes from.
struct IndexOrigin {
    std::string state;       ///< what tells this state of the index from all others
    std::int64_t bytes = 0;  ///< how large it is
    std::string made;        ///< when it was written, in UTC: "2026-11-24T10:53:02Z"
    /// Whether it is a file of the user who runs this program, and others may not write to it.
    bool is_users_own = false;
    /// Whether all of it has checksums, so that no damage stays unnoticed.
    bool has_checksums = false;
};

}  // namespace host

namespace storage {

/// One state of an index: every answer is from the state in which it was opened, whatever is written meanwhile. The
/// component's queries and all look-ups read its rows. For one thread at a time; its records are for any number.
///
/// Every function that reads throws `host::IndexError`, and what the interrupt check of the connection throws. Rows
/// come in any order unless the function says otherwise; ids and paths that the index lacks are passed over. Lists may
/// have any length.
class Database {
  public:
    Database() = default;
    virtual ~Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Sets what `check_interrupt` calls: a function that throws when the answer is no longer wanted.
    void watch(std::function<void()> check) { check_ = std::move(check); }
    /// To be called in loops over rows that were read, which the interrupt check of the connection does not reach.
    void check_interrupt() const { check_(); }

    /// The name of the index in messages.
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual host::IndexOrigin origin() = 0;
    /// The note of the index under a key of notes.h; empty when there is none.
    [[nodiscard]] virtual std::string noted(std::string_view key) = 0;

    /// Reads all of the index. Throws `IndexError` when it is damaged; without checksums only some damage shows.
    virtual void check() = 0;

    /// How many files there are; `most` where there are more.
    [[nodiscard]] virtual std::int64_t count_files(std::int64_t most) = 0;
    /// The files with these paths, in that order, each once.
    virtual void read_files_at(std::span<const std::string> paths, const host::OnRow<host::FileRow>& on_row) = 0;
    /// The files below a folder, or below none ("") all, in path order.
    virtual void read_files_below(std::string_view folder, const host::OnRow<host::FileRow>& on_row) = 0;
    virtual void read_files(std::vector<FileId> ids, const host::OnRow<host::FileRow>& on_row) = 0;

    virtual void read_declarations_in(std::vector<FileId> files, const host::OnRow<host::DeclarationRow>& on_row) = 0;
    virtual void read_declarations(std::vector<SymbolId> ids, const host::OnRow<host::DeclarationRow>& on_row) = 0;
    virtual void read_declarations_named(std::string_view name, const host::OnRow<host::DeclarationRow>& on_row) = 0;
    /// The names of all declarations that hold `part`, be it with other capitals A to Z; maybe others too.
    virtual void read_names(std::string_view part, const host::OnRow<host::NameRow>& on_row) = 0;
    virtual void read_descriptions(std::vector<SymbolId> declarations,
                                   const host::OnRow<host::DescriptionRow>& on_row) = 0;

    virtual void read_resolutions(const host::OnRow<host::ResolutionRow>& on_row) = 0;
    /// Those of the languages whose imports the indexer resolves.
    virtual void read_resolved_languages(std::span<const models::Text> names,
                                         const host::OnRow<std::string_view>& on_row) = 0;

    /// The edges into some declarations.
    virtual void read_edges_into(std::vector<SymbolId> declarations, const host::OnRow<host::EdgeRow>& on_row) = 0;
    /// The edges out of some files.
    virtual void read_edges_out_of(std::vector<FileId> files, const host::OnRow<host::EdgeRow>& on_row) = 0;

    // What records have in common. Rows refer to files, declarations and resolutions by number; each of these is read
    // once. The texts of paths, languages, kinds and resolutions are shared.

    /// The one shared text with these characters. It never holds more texts than the index does.
    [[nodiscard]] models::Text text(std::string_view characters);

    /// Reads the paths of files, for `path`.
    void read_paths(std::vector<FileId> files);

    /// The path of a file, if the index has it and `read_paths` has read it; else null. Valid until the next reading.
    [[nodiscard]] const models::Text* path(FileId file) const { return paths_.find(file); }

    /// The name of a resolution; the empty text when the index has none.
    [[nodiscard]] models::Text resolution(host::RowId id);

    /// The declarations of these files, as far as the index has both. The last answer is remembered, as all questions
    /// of a page are about the same files; it is valid until the next question.
    const host::DeclarationTable& declarations_of(std::span<const FileId> files);

    /// The edges out of these files, sorted. Remembered as the declarations are, until `forget_edges`.
    const host::Edges& edges_out_of(std::span<const FileId> files);
    void forget_edges();

    /// Gives away what `inbound_references` kept when it was last called: for each reference that it returned, the
    /// first line (`EdgeRow::first_line`) in its source.
    [[nodiscard]] std::vector<std::int32_t> take_inbound_lines() { return std::exchange(inbound_lines_, {}); }
    void keep_inbound_lines(std::vector<std::int32_t> lines) { inbound_lines_ = std::move(lines); }

    /// A line of a row as records hold it: an index may have any integer, of which this is the nearest.
    [[nodiscard]] static std::int32_t line(std::int64_t stored);

    /// The declarations with these ids, as far as the index has them and their files.
    [[nodiscard]] host::DeclarationTable declarations(const std::vector<SymbolId>& ids);

  private:
    /// Has `read` read declarations, and makes records of those whose files the index has.
    host::DeclarationTable records(const std::function<void(const host::OnRow<host::DeclarationRow>&)>& read);

    std::function<void()> check_ = [] {};
    std::unordered_set<models::Text, models::TextHash, std::equal_to<>> texts_;
    models::OrderedMap<FileId, models::Text> paths_;
    models::OrderedMap<host::RowId, models::Text> resolutions_;
    std::vector<FileId> page_;  // the files of which these are the declarations
    host::DeclarationTable declarations_of_page_;
    std::vector<FileId> sources_;  // the files out of which these edges lead
    host::Edges edges_out_of_sources_;
    std::vector<std::int32_t> inbound_lines_;
};

}  // namespace storage
