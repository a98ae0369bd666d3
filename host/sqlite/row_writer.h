// Writes the rows of an SQLite index.
#pragma once

#include "host/index/row_writer.h"
#include "host/sqlite/sqlite_connection.h"

#include <string_view>

namespace host {

/// Writes rows into an index that has its tables (`create_schema`). The connection must outlive the writer. Every
/// function throws `SqliteError`, above all when there is such a row already.
class SqliteRowWriter : public RowWriter {
  public:
    explicit SqliteRowWriter(const SqliteConnection& connection);

    void note(std::string_view key, std::string_view value) override;
    void add(const FileRow& row) override;
    void add(const LanguageRow& row) override;
    void add(const DeclarationRow& row) override;
    void add(const DescriptionRow& row) override;
    void add(const ResolutionRow& row) override;
    void add(const EdgeRow& row) override;

  private:
    Statement notes_;
    Statement files_;
    Statement languages_;
    Statement declarations_;
    Statement descriptions_;
    Statement resolutions_;
    Statement edges_;
};

}  // namespace host
