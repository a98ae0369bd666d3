// The rows of each file of an extraction.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/rows.h"
#include "host/indexing/extraction.h"
#include "host/indexing/references.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::indexing {

/// The kind of what stands for a file as a module.
inline constexpr std::string_view MODULE_KIND = "module";

/// The ids of rows: files have the order of the extraction, from 1 on; declarations follow their files, the module first.
class RowIds {
  public:
    /// The ids of a new index, from 1 on. `is_module` says which files get a declaration as modules. Behind the
    /// declarations of each file `room` ids are left to those that it may get.
    RowIds(const Extraction& extraction, std::vector<bool> is_module, RowId room);

    /// Those of an index that is there. `first` holds the lowest id of each file, and of one without declarations that
    /// of the next file; one more element holds the end of all.
    RowIds(const Extraction& extraction, std::vector<bool> is_module, std::vector<RowId> first);

    [[nodiscard]] static RowId of_file(std::uint32_t file) { return RowId{file} + 1; }
    [[nodiscard]] bool is_module(std::uint32_t file) const { return is_module_[file]; }
    /// Only for a file that gets such a declaration.
    [[nodiscard]] RowId of_module(std::uint32_t file) const { return first_[file]; }
    [[nodiscard]] RowId of(const DeclarationPlace& place) const {
        return first_[place.file] + (is_module_[place.file] ? 1 : 0) + place.declaration;
    }
    /// Returns the file of a declaration.
    [[nodiscard]] std::uint32_t file_of(RowId declaration) const;
    /// Returns how many declarations a file has, with its module.
    [[nodiscard]] std::int64_t declarations(std::uint32_t file) const { return declarations_[file]; }
    /// Returns how many a file can have.
    [[nodiscard]] std::int64_t room(std::uint32_t file) const { return first_[file + 1] - first_[file]; }
    /// Returns an id that none exceeds.
    [[nodiscard]] RowId last() const { return first_.back() - 1; }

  private:
    std::vector<bool> is_module_;             // by file
    std::vector<std::int64_t> declarations_;  // by file
    std::vector<RowId> first_;                // by file; one more element holds the end
};

/// Returns the row of a file, whose texts are those of `extraction`.
FileRow file_row(const Extraction& extraction, std::uint32_t file, const RowIds& ids);

/// Returns the rows of a file's references, by target, then resolution.
std::vector<EdgeRow> edge_rows(const FileReferences& references, std::uint32_t file, const RowIds& ids);

/// The texts of a `DescriptionRow`.
struct Description {
    std::string signature;  ///< of the declaration and of those merged into it, one a line, each once
    std::string documentation;

    [[nodiscard]] bool is_empty() const { return signature.empty() && documentation.empty(); }
};

/// The texts of a declaration.
struct DeclarationTexts {
    DeclarationName name;
    Description description;
};

/// Reads the texts of all declarations of a file: of its module first, if that has a row.
std::vector<DeclarationTexts> texts_of(const Extraction& extraction, std::uint32_t file, const RowIds& ids,
                                       TextSpool& spool);

/// Returns the rows of the declarations of a file, in the order of `texts_of`, whose texts they refer to. Their uses
/// are 0.
std::vector<DeclarationRow> declaration_rows(const Extraction& extraction, const References& references,
                                             std::uint32_t file, const RowIds& ids,
                                             const std::vector<DeclarationTexts>& texts);

}  // namespace host::indexing
