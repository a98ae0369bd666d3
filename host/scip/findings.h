// What the references of an index say of how well it was made.
#pragma once

#include "host/scip/contents.h"
#include "host/scip/import_report.h"
#include "host/scip/references.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

/// Gathers what `ImportReport` tells of references, file by file in path order.
class Findings {
  public:
    /// `contents` must outlive this object.
    explicit Findings(const Contents& contents);

    /// `place` is the file's.
    void add(const std::string& path, const FileContents& file, const FileReferences& references, std::uint32_t place);

    void report(ImportReport& report) const;

  private:
    void add_nowhere(SymbolNumber symbol, std::int64_t count);

    const Contents& contents_;
    std::vector<bool> is_defined_;                 // by symbol
    std::set<std::string_view> own_heads_;         // of the symbols that the index defines
    std::set<std::string> held_modules_;           // each by its whole name and by the ends of that
    std::map<std::string, std::int64_t> nowhere_;  // by package
    std::set<std::string> missing_modules_;
    Examples lost_tests_;
};

}  // namespace host::scip
