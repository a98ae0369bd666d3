// The languages of the files of a repository.
#pragma once

#include "host/resolve/catalog.h"
#include "host/resolve/language_rules.h"
#include "host/resolve/module_rules.h"

#include <memory>
#include <vector>

namespace host::resolve {

class Languages {
  public:
    /// Sets the module of each file in the catalog, which must outlive the object.
    explicit Languages(Catalog& catalog);

    /// Returns null for a file of no known language.
    [[nodiscard]] const LanguageRules* rules(FileId file) const { return rules_[file]; }

    /// Returns the rules of the modules of a file of a known language.
    [[nodiscard]] const ModuleRules& modules(FileId file) const { return *modules_[file]; }

  private:
    std::vector<std::unique_ptr<ModuleRules>> all_;
    std::vector<const LanguageRules*> rules_;  // by file
    std::vector<const ModuleRules*> modules_;  // by file
};

}  // namespace host::resolve
