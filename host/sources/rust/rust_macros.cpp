#include "host/sources/rust/rust_macros.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using std::string_view;

constexpr auto MACROS_OF_EXPRESSIONS =
    std::to_array<string_view>({"assert", "assert_eq", "assert_ne", "dbg", "debug_assert", "debug_assert_eq",
                                "debug_assert_ne", "eprint", "eprintln", "format", "format_args", "panic", "print",
                                "println", "todo", "unimplemented", "unreachable", "write", "writeln"});

bool is_of_a_rust_name(char character) {
    return character == '_' || (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

// The name that ends at a place.
string_view name_before(string_view text, std::size_t end) {
    std::size_t begin = end;
    while (begin > 0 && is_of_a_rust_name(text[begin - 1])) {
        --begin;
    }
    return text.substr(begin, end - begin);
}

}  // namespace

std::string with_macros_as_calls(string_view text) {
    std::string written(text);
    for (std::size_t mark = text.find('!'); mark != string_view::npos && mark + 1 < text.size();
         mark = text.find('!', mark + 1)) {
        const char bracket = text[mark + 1];
        if (bracket != '(' && bracket != '[') {
            continue;
        }
        const string_view name = name_before(text, mark);
        if (bracket == '[' && name == "vec") {
            written.replace(mark - 3, 4, "   &");
        } else if (bracket == '(' && std::ranges::find(MACROS_OF_EXPRESSIONS, name) != MACROS_OF_EXPRESSIONS.end()) {
            written[mark] = ' ';
        }
    }
    return written;
}

}  // namespace host::sources
