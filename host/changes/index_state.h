// What a comparison reads of one index: all files, all declarations, and who uses them.
#pragma once

#include "host/files/checkout.h"
#include "host/index/database.h"
#include "host/rules/path_rules.h"
#include "models/text.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::changes {

/// The place of a file or declaration in the lists of an `IndexState`.
using Number = std::uint32_t;
inline constexpr Number NONE = std::numeric_limits<Number>::max();

struct FileState {
    RowId id = 0;
    std::string path;
    std::optional<std::int64_t> content_hash;  ///< none where the import has not read the source
    bool is_test = false;
    Number first_declaration = 0;  ///< its declarations stand together
    Number declarations = 0;
};

/// A declaration. Lines are 1-based and inclusive.
struct DeclarationState {
    RowId id = 0;
    Number file = 0;
    models::Text name;
    models::Text fqn;
    models::Text kind;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    Number type = NONE;      ///< the type that it is a member of, maybe of another file
    bool is_public = false;  ///< exported or a member of a public type, no module, and not private by its name
};

/// Finds rows by their ids.
class NumberById {
  public:
    NumberById() = default;
    /// Of each row its id; they are numbered in their order.
    explicit NumberById(const std::vector<RowId>& ids);
    /// The number of the row, or `NONE`.
    [[nodiscard]] Number find(RowId id) const;

  private:
    std::vector<std::pair<RowId, Number>> rows_;  // by id
};

/// The references that a file makes to a declaration, all of which prove that it uses that, or none.
struct Use {
    Number target = 0;  ///< a declaration
    Number source = 0;  ///< a file
    bool is_evidence = false;
    std::int64_t references = 0;
};

/// For one thread at a time.
class IndexState {
  public:
    /// Reads the index, which must outlive the object. `tests` are asked before the rules that it notes. Throws
    /// `IndexError`, and `std::runtime_error` with one line when these cannot be read.
    IndexState(storage::Database& db, const std::vector<PathRule>& tests);

    /// By path.
    [[nodiscard]] const std::vector<FileState>& files() const { return files_; }
    /// The file at a path, or `NONE`.
    [[nodiscard]] Number file_at(std::string_view path) const;

    /// By file, then in the order of the index.
    [[nodiscard]] const std::vector<DeclarationState>& declarations() const { return declarations_; }
    [[nodiscard]] const FileState& file_of(Number declaration) const { return files_[declarations_[declaration].file]; }

    /// By source.
    [[nodiscard]] std::span<const Use> uses_of(Number declaration) const;
    /// Those of all declarations of a file.
    [[nodiscard]] std::span<const Use> uses_of_file(Number file) const;

    /// Reads the signatures of the declarations of some files, for `signature`.
    void read_signatures(const std::vector<Number>& files);
    /// Empty where there is none, or it was not read.
    [[nodiscard]] std::string_view signature(Number declaration) const { return signatures_[declaration]; }

    /// The lines of a file as the import has read them; none where they are not at hand.
    [[nodiscard]] std::optional<std::vector<std::string>> source_of(Number file) const;

  private:
    void read_files(const std::vector<PathRule>& tests);
    void read_declarations();
    void find_members();
    void read_uses();

    storage::Database& db_;
    std::optional<Checkout> sources_;
    std::vector<FileState> files_;
    std::vector<DeclarationState> declarations_;
    NumberById file_by_id_;
    NumberById declaration_by_id_;
    std::vector<Use> uses_;
    std::vector<std::size_t> first_uses_;  // of each declaration the place of its first use, and the end of all
    std::vector<std::string> signatures_;
};

}  // namespace host::changes
