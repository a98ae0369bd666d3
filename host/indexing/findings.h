// What the references of an index say of how well it was made.
#pragma once

#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/references.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace host::indexing {

/// Gathers what `ImportReport` holds about references, file by file in path order.
class Findings {
  public:
    /// `extraction` must outlive this object.
    explicit Findings(const Extraction& extraction) : extraction_(extraction) {}

    /// Adds the references of the file at a place.
    void add(std::uint32_t file, const FileReferences& references);

    void report(ImportReport& report) const;

  private:
    const Extraction& extraction_;
    std::map<std::string, std::int64_t> nowhere_;  // by package
    std::set<std::string> missing_modules_;
    Examples lost_tests_;
};

}  // namespace host::indexing
