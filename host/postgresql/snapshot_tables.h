// The tables whose rows belong to a snapshot of a repository.
//
// Migrations (schema.cpp) say on their own how the tables came to be, and are never changed; the tables that they lead
// to are these.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace host::postgresql {

struct SnapshotTable {
    std::string_view name;
    std::string_view columns;  ///< behind the repository and the snapshot

    [[nodiscard]] constexpr std::size_t column_count() const {
        return 1 + static_cast<std::size_t>(std::ranges::count(columns, ','));
    }
};

inline constexpr std::array SNAPSHOT_TABLES{
    SnapshotTable{"notes", "key, value"},
    SnapshotTable{"files", "id, path, language, content_hash, declarations, declared_lines"},
    SnapshotTable{"languages", "id, name, import_resolved"},
    SnapshotTable{"symbols", "id, file_id, name, fqn, kind, is_export, start_line, end_line, uses"},
    SnapshotTable{"descriptions", "symbol_id, signature, documentation"},
    SnapshotTable{"resolutions", "id, name"},
    SnapshotTable{"edges", "source_file_id, target_id, resolution_id, refs, first_line"},
    SnapshotTable{"names", "symbol_id, lowered, rows"},
};

/// The place of a table in `SNAPSHOT_TABLES`. The name of no table does not compile.
consteval std::size_t place_of(std::string_view name) {
    std::size_t place = 0;
    while (SNAPSHOT_TABLES.at(place).name != name) {
        ++place;
    }
    return place;
}

/// All of them, as a statement lists them: "wiki_scope.notes, wiki_scope.files, ..."
inline std::string snapshot_table_list() {
    std::string list;
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        list.append(list.empty() ? "wiki_scope." : ", wiki_scope.").append(table.name);
    }
    return list;
}

}  // namespace host::postgresql
