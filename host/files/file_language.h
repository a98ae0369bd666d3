// What the name of a source file tells of its language.
#pragma once

#include <string_view>
#include <vector>

namespace host {

/// What the language of a file is called by the extension of its path, in lower case; empty when that says nothing. A
/// header, `.h`, is "c" until its text is known to be C++.
std::string_view usual_language(std::string_view path);

/// The language whose grammar reads the file: "tsx" for "a.tsx", and "cpp" for "a.h", since that of C++ reads headers
/// of C as well; else `usual_language`.
std::string_view usual_dialect(std::string_view path);

/// The extensions of a language's files, without dots, in the order in which its modules are looked for.
std::vector<std::string_view> extensions_of(std::string_view language);

/// The extensions of modules of JavaScript and TypeScript, which import each other, in the order in which they are
/// looked for: "ts", ..., "d.ts", "js", ...
const std::vector<std::string_view>& module_extensions();

/// What a file is called, without its extension, that stands for its folder in a language: "index", "__init__"; empty
/// where no file does.
std::string_view folder_stem(std::string_view language);

/// Whether a file stands for its folder: "a/index.ts", "a/index.d.ts", "a/__init__.py".
bool stands_for_folder(std::string_view path);

/// "src/a.ts" -> "a", "src/a.d.ts" -> "a"
std::string_view stem_of(std::string_view path);

/// Whether the file is of a language whose files are named as the class in them.
bool is_named_as_class(std::string_view path);

}  // namespace host
