// Rows in columns, for people.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace host {

/// A table whose columns are as wide as what stands in them, two blanks apart. Widths count code points; control
/// characters are written out.
class Table {
  public:
    /// Numbers stand at the right of their column.
    enum class Column { TEXT, NUMBER };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with a cell for each column, the first of all being the heading.
    void add(const std::vector<std::string>& cells);

    /// Writes the rows; nothing when there is none behind the heading. No line ends with a blank.
    void write(std::ostream& out) const;

  private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace host
