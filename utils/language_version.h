// The version of C++ that all headers need.
#pragma once

#if __cplusplus < 202002L && !defined(_MSC_VER)
#error "wiki_scope needs C++20: compile with -std=c++20"
#endif
