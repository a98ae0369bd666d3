// Who fills an index.
#pragma once

#include "host/index/rows.h"

#include <string_view>

namespace host {

/// Writes the rows of a new index, in any order. Every function throws `IndexError`; that there is such a row already
/// may turn out later.
class RowWriter {
  public:
    RowWriter() = default;
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    /// Notes something about the index as a whole.
    virtual void note(std::string_view key, std::string_view value) = 0;

    virtual void add(const FileRow& row) = 0;
    virtual void add(const LanguageRow& row) = 0;
    virtual void add(const DeclarationRow& row) = 0;
    virtual void add(const DescriptionRow& row) = 0;
    virtual void add(const ResolutionRow& row) = 0;
    virtual void add(const EdgeRow& row) = 0;
};

}  // namespace host
