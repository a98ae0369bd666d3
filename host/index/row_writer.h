// Writes the rows of an index.
#pragma once

#include "host/index/rows.h"

#include <string_view>

namespace host {

/// Writes the rows of a new index, in any order. Every function throws `IndexError`, maybe later than the call that is
/// at fault: for a row that is there already, or when the index cannot be written.
class RowWriter {
  public:
    RowWriter() = default;
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    /// Adds a note about the index as a whole, under a key of notes.h.
    virtual void note(std::string_view key, std::string_view value) = 0;

    virtual void add(const FileRow& row) = 0;
    virtual void add(const LanguageRow& row) = 0;
    virtual void add(const DeclarationRow& row) = 0;
    virtual void add(const DescriptionRow& row) = 0;
    virtual void add(const ResolutionRow& row) = 0;
    virtual void add(const EdgeRow& row) = 0;
};

}  // namespace host
