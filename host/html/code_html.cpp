#include "host/html/code_html.h"

#include "host/html/highlighting.h"
#include "host/html/html_text.h"

#include <array>
#include <cstddef>

namespace host::html {

std::string code_html(std::string_view code, std::string_view language, std::string_view path) {
    constexpr std::size_t LONGEST = 262'144;
    constexpr std::array<std::string_view, 7> NAMES{"", "k", "s", "n", "c", "f", "t"};  // in the order of `CodeClass`
    const sources::Language* const understood = sources::understood_language(language, path);
    if (understood == nullptr || code.size() > LONGEST) {
        return html_text(code);
    }
    const std::vector<CodeClass> classes = code_classes(code, *understood);
    std::string html;
    for (std::size_t begin = 0; begin < code.size();) {
        std::size_t end = begin + 1;
        while (end < code.size() && classes[end] == classes[begin]) {
            ++end;
        }
        const std::string text = html_text(code.substr(begin, end - begin));
        const std::string_view name = NAMES.at(static_cast<std::size_t>(classes[begin]));
        html += name.empty() ? text : "<span class=\"" + std::string(name) + "\">" + text + "</span>";
        begin = end;
    }
    return html;
}

}  // namespace host::html
