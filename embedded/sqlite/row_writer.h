// Who fills an index.
#pragma once

#include "embedded/sqlite/connection.h"
#include "embedded/sqlite/index_rows.h"

#include <string_view>

namespace embedded {

/// Writes rows into an index that has its tables (`create_schema`). The connection must outlive the writer. Every
/// function throws `SqliteError`, above all when there is such a row already.
class RowWriter {
  public:
    explicit RowWriter(const Connection& connection);

    /// Notes something about the index as a whole.
    void note(std::string_view key, std::string_view value);

    void add(const FileRow& row);
    void add(const LanguageRow& row);
    void add(const DeclarationRow& row);
    void add(const DescriptionRow& row);
    void add(const ResolutionRow& row);
    void add(const EdgeRow& row);

  private:
    Statement notes_;
    Statement files_;
    Statement languages_;
    Statement declarations_;
    Statement descriptions_;
    Statement resolutions_;
    Statement edges_;
};

}  // namespace embedded
