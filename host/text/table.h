// A table as text for people.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace host {

/// A table whose columns are as wide as their widest cell and two blanks apart. Widths count code points. Control
/// characters are escaped (printable.h).
class Table {
  public:
    /// Text is aligned to the left, numbers to the right.
    enum class Column { TEXT, NUMBER };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one cell for each column. The first row is the heading.
    void add(const std::vector<std::string>& cells);

    /// Writes the rows, or nothing when there is only a heading. No line ends with a blank.
    void write(std::ostream& out) const;

  private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace host
