// A repository made by one seeded generator, as an indexer would describe it.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

/// How large a generated repository is. Files of the folder "core" come first, and what they declare is used most.
struct Repository {
    int files = 0;
    int declarations_per_file = 0;
    int targets_per_file = 0;  ///< declarations of other files, and of its own, that a file refers to
    int tokens_per_target = 0;
    int core_files = 0;
    int files_per_folder = 0;  ///< in the other folders
};

/// 200,000 declarations, 2,000,000 edges, and 6,000,000 references in some 500 MB of SCIP.
inline constexpr Repository LARGE_REPOSITORY{20'000, 10, 100, 3, 500, 100};

/// The path of a file, which counts from 0: 25 to 45 characters, in ascending order; every tenth is a test.
std::string path_of(const Repository& repository, int file);

/// Writes the SCIP file of a repository, always the same for the same shape. A third of the references stay in the
/// neighbourhood; of the others, the first k declarations get a share that grows with the logarithm of k. Throws
/// `std::runtime_error` when the file cannot be written.
void write_scip(const Repository& repository, const std::string& path);

}  // namespace bench
