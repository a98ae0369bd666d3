// The memory of the parser.
#pragma once

#include <cstddef>

namespace host::sources {

/// Keeps the parser's own faults from corrupting memory, and from losing it; and stops the parser when it takes more
/// memory than a source needs.
///
/// The number of a node's children wraps around at 65,536, which brackets that nobody closes can reach: the parser then
/// frees an address inside of a block. Such a block is left alone until this object goes, with all that was allocated on
/// this thread since it was made.
///
/// One at a time on a thread. What the parser keeps for longer is allocated when there is none.
class ParserMemory {
  public:
    /// `most` is in bytes; `is_cancelled` must outlive the object.
    ParserMemory(std::ptrdiff_t most, const std::size_t& is_cancelled);
    ~ParserMemory();
    ParserMemory(const ParserMemory&) = delete;
    ParserMemory& operator=(const ParserMemory&) = delete;

    /// The cancellation flag of a parser: other than 0 from the first allocation on that finds more than `most` in use,
    /// or `is_cancelled`, which it reads atomically, other than 0.
    [[nodiscard]] const std::size_t& must_stop() const { return must_stop_; }

    /// Counts bytes that the parser has come to use or, below 0, has given back.
    void count(std::ptrdiff_t bytes);

    /// Has the parser allocate so, from now on. To be called before anything else of it.
    static void set_up();

  private:
    const std::ptrdiff_t most_;
    const std::size_t& is_cancelled_;
    std::ptrdiff_t used_ = 0;
    std::size_t must_stop_ = 0;
};

}  // namespace host::sources
