#include "host/resolve/languages.h"

#include <algorithm>

namespace host::resolve {

Languages::Languages(Catalog& catalog) : rules_(catalog.files(), nullptr), modules_(catalog.files(), nullptr) {
    for (const LanguageRules& rules : language_rules()) {
        const auto is_of_it = [&](FileId file) {
            return std::ranges::find(rules.languages, catalog.file(file).language) != rules.languages.end();
        };
        all_.push_back(rules.modules(catalog));
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (is_of_it(file)) {
                rules_[file] = &rules;
                modules_[file] = all_.back().get();
            }
        }
    }
}

}  // namespace host::resolve
