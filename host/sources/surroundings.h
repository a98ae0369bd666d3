// The surroundings of the declarations of a file: what belongs to them, and their namespaces.
#pragma once

#include "host/sources/captures.h"

#include <unordered_map>

namespace host::sources {

struct Surroundings {
    Bytes whole;                 ///< the declaration with the wrappers that hold nothing but it
    bool is_exported = false;    ///< whether it is marked as public, or a wrapper of it is
    bool is_outermost = false;   ///< whether it stands in no other declaration
    NodeId enclosing = nullptr;  ///< the innermost namespace that it stands in; null at the top of the file
};

/// By declaration, for every one in `nodes`.
std::unordered_map<NodeId, Surroundings> surroundings_of(const std::unordered_map<NodeId, CapturedNode>& nodes);

}  // namespace host::sources
