#include "host/resolve/spellings.h"

#include <functional>

namespace host::resolve {

Name Spellings::add(std::string_view spelling) {
    std::size_t slot = slot_of(spelling);
    if (slots_[slot] == FREE) {
        if (3 * (spellings_.size() + 1) > 2 * slots_.size()) {
            grow();
            slot = slot_of(spelling);
        }
        slots_[slot] = static_cast<Name>(spellings_.size());
        spellings_.push_back(spelling);
    }
    return slots_[slot];
}

Name Spellings::find(std::string_view spelling, Name missing) const {
    const Name found = slots_[slot_of(spelling)];
    return found == FREE ? missing : found;
}

// Where the number of a spelling stands, or else is to stand: the first such slot from the one that its hash gives.
std::size_t Spellings::slot_of(std::string_view spelling) const {
    std::size_t slot = std::hash<std::string_view>()(spelling) % slots_.size();
    while (slots_[slot] != FREE && spellings_[slots_[slot]] != spelling) {
        slot = (slot + 1) % slots_.size();
    }
    return slot;
}

void Spellings::grow() {
    slots_.assign(2 * slots_.size(), FREE);
    for (Name name = 0; name < spellings_.size(); ++name) {
        slots_[slot_of(spellings_[name])] = name;
    }
}

}  // namespace host::resolve
