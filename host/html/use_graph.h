// Who uses a page, and what it leans on, as a graph that one can take in at a glance.
#pragma once

#include "host/page/page.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace host::html {

struct GraphNode {
    /// Where it stands. A file that uses the page and that the page leans on stands on both sides of it.
    enum class Side : std::uint8_t { USERS, PAGE, USED };
    Side side = Side::USERS;
    std::string path;       ///< of a file, or of a folder, which is empty for the root
    std::size_t files = 0;  ///< that it stands for; 0 for a file
};

/// The references that the files of one node make to those of another one.
struct GraphArrow {
    std::size_t from = 0;  ///< by the order of the nodes
    std::size_t to = 0;
    std::int64_t references = 0;
};

struct UseGraph {
    std::vector<GraphNode> nodes;    ///< by side, then by path
    std::vector<GraphArrow> arrows;  ///< by `from`, then by `to`
};

/// The files of a page, the production files that use these (`file_users`), and those that they use (`neighbours`).
/// Where there are more than `most` (at least 3), files are folded into their folders: outside of the page first, from
/// the deepest folders up, of these what holds most first.
UseGraph use_graph(const Page& page, std::size_t most = 30);

}  // namespace host::html
