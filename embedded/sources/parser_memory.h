// The memory of the parser.
#pragma once

namespace embedded::sources {

/// Keeps the parser's own faults from corrupting memory, and from losing it. The number of a node's children wraps
/// around at 65,536, which brackets that nobody closes can reach: the parser then frees an address inside of a block.
/// Such a block is left alone until this object goes, with all that was allocated on this thread since it was made.
///
/// One at a time on a thread. What the parser keeps for longer is allocated when there is none.
class ParserMemory {
  public:
    ParserMemory();
    ~ParserMemory();
    ParserMemory(const ParserMemory&) = delete;
    ParserMemory& operator=(const ParserMemory&) = delete;

    /// Has the parser allocate so, from now on. To be called before anything else of it.
    static void set_up();
};

}  // namespace embedded::sources
