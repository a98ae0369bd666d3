#include "embedded/scip/language.h"

#include "embedded/text/ascii.h"
#include "embedded/text/control_characters.h"

#include <algorithm>
#include <array>

namespace embedded::scip {

namespace {

std::string_view language_of_extension(std::string_view path) {
    struct Row {
        std::string_view language;
        std::string_view extensions;  // each between slashes, which no file name has
    };
    static constexpr std::array<Row, 16> ROWS{{
        {"typescript", "/ts/tsx/mts/cts/"},
        {"javascript", "/js/jsx/mjs/cjs/"},
        {"python", "/py/pyi/"},
        {"c", "/c/h/"},
        {"cpp", "/cc/cpp/cxx/hpp/hh/hxx/"},
        {"go", "/go/"},
        {"rust", "/rs/"},
        {"java", "/java/"},
        {"kotlin", "/kt/kts/"},
        {"scala", "/scala/"},
        {"ruby", "/rb/"},
        {"csharp", "/cs/"},
        {"php", "/php/"},
        {"swift", "/swift/"},
        {"dart", "/dart/"},
        {"objective-c", "/m/mm/"},
    }};
    const std::string_view file = path.substr(path.rfind('/') + 1);
    const std::size_t dot = file.rfind('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    const std::string extension = '/' + std::string(file.substr(dot + 1)) + '/';
    const auto* const row = std::find_if(ROWS.begin(), ROWS.end(), [&](const Row& each) {
        return each.extensions.find(extension) != std::string_view::npos;
    });
    return row == ROWS.end() ? std::string_view() : row->language;
}

}  // namespace

std::string language_of(std::string_view stated, std::string_view path) {
    const bool says_something = !stated.empty() && !has_control_character(stated);
    return lowered(says_something ? stated : language_of_extension(path));
}

}  // namespace embedded::scip
