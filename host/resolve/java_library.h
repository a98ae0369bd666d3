// The types of Java's language and of its package `java.lang`, as far as overloads are told apart by them.
#pragma once

#include <string_view>

namespace host::resolve {

/// `int`, `boolean`, ...; not `void`.
bool is_java_primitive(std::string_view type);

/// Whether a value of the first primitive type is one of the other without being written so: `int` of `long`.
bool java_widens(std::string_view from, std::string_view to);

/// Returns the class that holds a primitive type, "Integer" of `int`; empty for other types.
std::string_view java_box(std::string_view primitive);

/// Returns whether no class of a repository inherits from the type, and all its own bases are known here: `String`.
bool is_java_final(std::string_view type);

/// Returns whether one final type inherits from another type: "String" from "CharSequence". Each does from "Object".
bool java_final_inherits(std::string_view type, std::string_view base);

}  // namespace host::resolve
