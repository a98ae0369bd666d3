// The tables whose rows belong to a snapshot of a repository.
#pragma once

#include <array>
#include <string_view>

namespace host::postgresql {

struct SnapshotTable {
    std::string_view name;
    std::string_view columns;  ///< behind the repository and the snapshot
};

inline constexpr std::array SNAPSHOT_TABLES{
    SnapshotTable{"notes", "key, value"},
    SnapshotTable{"files", "id, path, language, content_hash, declarations, declared_lines"},
    SnapshotTable{"languages", "id, name, import_resolved"},
    SnapshotTable{"symbols", "id, file_id, name, fqn, kind, is_export, start_line, end_line, uses"},
    SnapshotTable{"descriptions", "symbol_id, signature, documentation"},
    SnapshotTable{"resolutions", "id, name"},
    SnapshotTable{"edges", "source_file_id, target_id, resolution_id, refs"},
    SnapshotTable{"names", "symbol_id, lowered, rows"},
};

}  // namespace host::postgresql
