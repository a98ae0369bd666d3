// The memory of the parser, which is released as a whole when a text has been read.
#pragma once

#include <cstddef>

namespace host::sources {

/// Has the parser take its memory from here. To be called before anything of the parser that is used without a
/// `ParserMemory`; safe to call again, and on several threads.
void provide_parser_memory();

/// What the parser allocates on this thread while the object lives. All of it is released with the object: trees,
/// cursors and parsers must not be used any longer, and trees need not be deleted. Each thread may have one at a time.
/// What the parser allocates without one, it has to release itself.
///
/// A tree has as many blocks as the text has tokens: to release them one by one, and to look for room for each, takes
/// a tenth of the time of parsing.
class ParserMemory {
  public:
    class Region;

    ParserMemory();
    ~ParserMemory();
    ParserMemory(const ParserMemory&) = delete;
    ParserMemory& operator=(const ParserMemory&) = delete;

    /// How many bytes have been taken so far. What the parser released is counted until it is taken again.
    [[nodiscard]] std::size_t size() const;

  private:
    Region& region_;
};

}  // namespace host::sources
