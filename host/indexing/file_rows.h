// The rows of each file of an extraction.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/rows.h"
#include "host/indexing/extraction.h"
#include "host/indexing/references.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host::indexing {

/// The ids of rows, from 1 on: files have the order of the extraction; declarations follow their files, the module
/// first.
class RowIds {
  public:
    /// `is_module` says which files get a declaration as modules.
    RowIds(const Extraction& extraction, std::vector<bool> is_module);

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
    [[nodiscard]] std::int64_t declarations(std::uint32_t file) const { return first_[file + 1] - first_[file]; }
    /// Returns the highest id of a declaration.
    [[nodiscard]] RowId last() const { return first_.back() - 1; }

  private:
    std::vector<bool> is_module_;  // by file
    std::vector<RowId> first_;     // by file; one more element holds the id after the last
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

/// Reads the texts of a declaration.
Description description_of(const Declaration& declaration, TextSpool& spool);

}  // namespace host::indexing
