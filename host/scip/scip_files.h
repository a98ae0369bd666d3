// The SCIP files of one repository.
#pragma once

#include "host/scip/contents.h"
#include "host/scip/project_root.h"
#include "host/scip/scip_file.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host::scip {

/// SCIP files in an order that follows from what they are, however they were named: by project root, indexer and
/// content. Of files of equal content there is one.
class ScipFiles {
  public:
    /// Opens the files at `paths`, as `InputFile` and `ScipFile` do and with what these throw.
    ScipFiles(const std::vector<std::string>& paths, const std::string& copy_path,
              const std::function<void()>& check_interrupt);

    [[nodiscard]] std::size_t document_count() const;

    /// The names of the files, in their order, joined by ", ".
    [[nodiscard]] std::string names() const;

    /// The indexers that have written them, with their versions: each once, in the order of the names, joined by ", ".
    [[nodiscard]] std::string tools() const;

    /// How the projects lie in their repository; its folders are those of the files, in their order.
    [[nodiscard]] Repository repository(const std::optional<std::string>& checkout) const;

    /// The files in the folders of this repository. Valid as long as this object.
    [[nodiscard]] std::vector<PlacedScipFile> placed_in(const Repository& repository);

  private:
    std::vector<ScipFile> files_;
    std::vector<std::size_t> order_;  // places in `files_`
};

}  // namespace host::scip
