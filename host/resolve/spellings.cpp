#include "host/resolve/spellings.h"

#include <functional>

namespace host::resolve {

namespace {

std::size_t hash_of_spelling(std::string_view spelling) {
    return std::hash<std::string_view>()(spelling);
}

}  // namespace

Name Spellings::add(std::string_view spelling) {
    const auto [name, is_new] = numbers_.number(
        hash_of_spelling(spelling), [&](Name each) { return spellings_[each] == spelling; },
        [&](Name each) { return hash_of_spelling(spellings_[each]); });
    if (is_new) {
        spellings_.push_back(spelling);
    }
    return name;
}

Name Spellings::find(std::string_view spelling, Name missing) const {
    return numbers_.find(hash_of_spelling(spelling), [&](Name each) { return spellings_[each] == spelling; })
        .value_or(missing);
}

}  // namespace host::resolve
