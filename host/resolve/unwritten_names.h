// Names that are looked up in a type although no token of the text that leads there has them.
#pragma once

#include <array>
#include <string_view>

namespace host::resolve {

/// Of what `new A` calls, where it has not the name of its type.
inline constexpr std::string_view CONSTRUCTOR = "constructor";

// Python's methods, and C++'s operators, that say what an operation gives.
inline constexpr std::string_view CALL_METHOD = "__call__";
inline constexpr std::string_view ELEMENT_METHOD = "__getitem__";
inline constexpr std::string_view ITERATOR_METHOD = "__iter__";
inline constexpr std::string_view NEXT_METHOD = "__next__";
inline constexpr std::string_view TARGET_OPERATOR = "operator->";
inline constexpr std::string_view ELEMENT_OPERATOR = "operator[]";
inline constexpr std::string_view CALL_OPERATOR = "operator()";

inline constexpr std::array UNWRITTEN_NAMES{CONSTRUCTOR, CALL_METHOD,     ELEMENT_METHOD,   ITERATOR_METHOD,
                                            NEXT_METHOD, TARGET_OPERATOR, ELEMENT_OPERATOR, CALL_OPERATOR};

/// Under which a module exports what it is as a whole.
inline constexpr std::string_view WHOLE_MODULE = "export=";

}  // namespace host::resolve
