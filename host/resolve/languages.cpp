#include "host/resolve/languages.h"

namespace host::resolve {

Languages::Languages(Catalog& catalog) : modules_(catalog.files(), nullptr) {
    for (FileId file = 0; file < catalog.files(); ++file) {
        rules_.push_back(rules_of(catalog.file(file).language));
    }
    for (const LanguageRules& rules : language_rules()) {
        all_.push_back(rules.modules(catalog));
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (rules_[file] == &rules) {
                modules_[file] = all_.back().get();
            }
        }
    }
}

}  // namespace host::resolve
