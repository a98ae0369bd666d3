// Which files and declarations of an old state are still there in a new one, and where.
//
//   - A file is the same one at the same path; of what is left over, where one file of the old state and one of the new
//     state have the same content.
//   - A declaration is the same one in the same file by its qualified name; of several of one name (overloads) those of
//     the same kind and signature, then what is left over if it is one on each side.
//   - What is left over was moved to another file, or renamed, where its text says so (same_text.h).
#pragma once

#include "host/changes/index_state.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace host::changes {

/// Who corresponds to whom; `NONE` for who has no counterpart.
struct Counterparts {
    std::vector<Number> of_old;
    std::vector<Number> of_new;

    Counterparts(std::size_t old_size, std::size_t new_size) : of_old(old_size, NONE), of_new(new_size, NONE) {}

    void join(Number old_one, Number new_one) {
        of_old[old_one] = new_one;
        of_new[new_one] = old_one;
    }
};

struct Pairing {
    Counterparts files;
    Counterparts declarations;
};

/// Pairs the files of two states, and the declarations of these files. Reads the signatures of both states for files
/// whose content is not known to be the same. Throws `IndexError`.
Pairing paired(IndexState& old_state, IndexState& new_state);

/// Whether both are known to have the same content.
bool have_same_content(const FileState& one, const FileState& other);

/// A declaration, and what it is called where it is looked for.
struct Named {
    std::string_view name;
    Number declaration = 0;
};

/// Pairs declarations of one name, as `paired` does with those of a file.
void join_by_name(const IndexState& old_state, std::vector<Named> olds, const IndexState& new_state,
                  std::vector<Named> news, Counterparts& declarations);

}  // namespace host::changes
