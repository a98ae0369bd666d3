// What has changed between two states of a repository, as their indexes know it, and whom it concerns.
//
// Only references that prove a use are followed: those that were resolved within a file, or through imports. Tests are
// told apart from production code. Texts that the indexes do not hold are read where the sources are still those that
// were imported.
#pragma once

#include "host/index/database.h"
#include "host/rules/path_rules.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host::changes {

struct ChangesRequest {
    std::vector<std::string> paths = {};  ///< as `find_paths` reads them, in either index; none for all files
    std::vector<PathRule> tests = {};     ///< asked before the rules that the indexes note
    std::size_t depth = 1;                ///< how many steps users of users are followed; at least 1
};

struct MovedFile {
    std::string old_path;
    std::string new_path;
};

/// A declaration as one of the states has it. Lines are 1-based and inclusive.
struct Declared {
    std::string name;  ///< with the types that it stands in: "Session.close"
    std::string fqn;
    std::string kind;
    std::string path;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    std::string signature;   ///< up to the body; may be empty
    bool is_public = false;  ///< exported or a member of an exported type, and not private by its name
};

/// A production file that has used a declaration.
struct User {
    enum class Now : std::uint8_t {
        USES,       ///< is proven to use it still, in the new state
        UNCHANGED,  ///< of what is gone: its content is the same, so that it still names it
        CHANGED,    ///< of what is gone, or not used by it any more: its content is another
        GONE,       ///< the file itself is gone
        UNKNOWN,    ///< of what is gone: the content of the file is not known
    };
    std::string path;             ///< in the old state
    std::int64_t references = 0;  ///< in the old state
    Now now = Now::USES;
};

/// A production file that may notice a change through others.
struct Distant {
    std::string path;          ///< in the new state
    std::size_t distance = 0;  ///< in steps from user to user; 2 for the users of users
};

struct DeclarationChange {
    std::optional<Declared> before = std::nullopt;  ///< none for what was added
    std::optional<Declared> after = std::nullopt;   ///< none for what was removed
    std::size_t members = 0;  ///< of a type that was added or removed: its public members, which are so too
    bool is_moved = false;    ///< to another file, while its own file is still there or has other content
    bool is_renamed = false;
    bool has_other_signature = false;
    bool has_other_kind = false;
    bool has_other_visibility = false;  ///< by itself, not by its type

    std::vector<User> users = {};         ///< other production files that used it or its members before; by path
    std::vector<Distant> distant = {};    ///< by distance, then by path; beyond the first step
    std::vector<std::string> tests = {};  ///< that are proven to use it; of what is gone, that were; by path
    std::int64_t name_matches = 0;        ///< references of other production files that only match its name
};

/// A file whose users are others than before, by the uses that are proven.
struct FileUsersChange {
    std::string path;  ///< in the new state
    std::vector<std::string> gained = {};
    std::vector<std::string> lost = {};  ///< by their paths in the old state
};

/// Everything is by path, then in the order of lines.
struct Changes {
    std::vector<std::string> added_files = {};
    std::vector<std::string> removed_files = {};
    std::vector<MovedFile> moved_files = {};  ///< the same content at another path
    std::vector<std::string> changed_files = {};

    // Public declarations of production files.
    std::vector<DeclarationChange> removed = {};
    std::vector<DeclarationChange> changed = {};  ///< moved, renamed, or with another signature, kind or visibility
    std::vector<DeclarationChange> added = {};    ///< without users
    std::vector<FileUsersChange> users = {};
    /// Top-level types and callables that other production files are proven to have used, and none refers to now.
    std::vector<Declared> unused = {};
    std::vector<Declared> used_again = {};  ///< the other way round

    std::vector<std::string> remarks = {};  ///< on paths that neither index has, each one line
    bool is_failure = false;                ///< whether paths were named, and none of them was found

    [[nodiscard]] bool empty() const;
};

/// Compares two indexes, each on a thread of its own. Throws `IndexError`, what the interrupt checks of their
/// connections throw, and `std::runtime_error` with one line when the rules that an index notes cannot be read.
Changes compare(storage::Database& old_index, storage::Database& new_index, const ChangesRequest& request);

}  // namespace host::changes
