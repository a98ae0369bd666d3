// What a grammar does not understand of its language, put in a way that it does.
#pragma once

#include <string>
#include <string_view>

namespace embedded::sources {

/// The text of a TypeScript file with a semicolon in place of the last blank before each "<" that begins a line and
/// may begin a member of a type. The grammar takes such a line for the type arguments of the one above, where the
/// language forbids a line break. All else stands where it stood.
///
///     <K>(key: K): Box<K>          <K>(key: K): Box<K>
///     <K, V>(key: K): Box<V>      ;<K, V>(key: K): Box<V>
std::string with_separators(std::string_view text);

}  // namespace embedded::sources
