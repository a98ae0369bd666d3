// The library for TOML, without its assertions: a text such as "[[[" breaks one, and is then refused with a parse
// error. For rooms that use the library.
#pragma once

#include <toml++/impl/preprocessor.h>

#undef TOML_ASSERT_ASSUME
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): the library has it as a macro
#define TOML_ASSERT_ASSUME(expression) static_assert(true)

#include <toml++/toml.h>
