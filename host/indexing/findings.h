// Findings about an index that its references reveal: symbols of no file, missing modules, tests that reach nothing.
#pragma once

#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/references.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace host::indexing {

/// Collects the part of an `ImportReport` that is about references, file by file in path order.
class Findings {
  public:
    /// `extraction` must outlive this object.
    explicit Findings(const Extraction& extraction) : extraction_(extraction) {}

    /// Adds the references of the file at this index of `extraction.files`.
    void add(std::uint32_t file, const FileReferences& references);

    /// Writes what was found into `report`.
    void report(ImportReport& report) const;

  private:
    const Extraction& extraction_;
    std::map<std::string, std::int64_t> nowhere_;  // by package
    std::set<std::string> missing_modules_;
    Examples lost_tests_;
};

}  // namespace host::indexing
