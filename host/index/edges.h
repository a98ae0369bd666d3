// Edges as pages read them.
#pragma once

#include "host/index/rows.h"

#include <deque>

namespace host {

/// Edges as they come: however many they get, none is copied again.
using Edges = std::deque<EdgeRow>;

/// Sorts edges, by source first. Takes linear time where they come as an index by target has them, and the ids of their
/// sources lie close together.
void sort_edges(Edges& edges);

}  // namespace host
