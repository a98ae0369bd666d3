// The memory of the parser.
#pragma once

namespace embedded::sources {

/// Has the parser allocate in a way that its own faults cannot corrupt; to be called before anything else of it. The
/// number of a node's children wraps around at 65,536 there, which brackets that nobody closes can reach: the parser
/// then frees an address inside of a block. Such a block is left alone.
void guard_parser_memory();

}  // namespace embedded::sources
