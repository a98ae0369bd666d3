// The memory of the parser, counted.
#pragma once

#include <cstddef>

namespace host::sources {

/// Has the parser count what it allocates, from now on. To be called before anything else of it; safe to call again,
/// and on several threads.
void count_parser_memory();

/// How many bytes the parser has in use of what it has allocated on this thread. To be compared with an earlier answer:
/// what the thread frees of another's counts against it.
std::ptrdiff_t parser_memory();

}  // namespace host::sources
