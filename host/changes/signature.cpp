#include "host/changes/signature.h"

#include "host/text/ascii.h"

#include <cstddef>

namespace host::changes {

namespace {

bool is_blank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

}  // namespace

std::string compact(std::string_view signature) {
    std::string text;
    bool is_apart = false;
    for (const char each : signature) {
        if (is_blank(each)) {
            is_apart = true;
            continue;
        }
        const bool is_closing = each == ')' || each == ']' || each == '}' || each == '>';
        if (is_closing && text.ends_with(',')) {
            text.pop_back();
        }
        if (is_apart && !text.empty() && is_part_of_name(text.back()) && is_part_of_name(each)) {
            text.push_back(' ');
        }
        text.push_back(each);
        is_apart = false;
    }
    return text;
}

bool is_same_signature(std::string_view one, std::string_view other) {
    return one == other || compact(one) == compact(other);
}

std::string on_one_line(std::string_view signature) {
    std::string text;
    bool is_apart = false;
    for (const char each : signature) {
        if (is_blank(each)) {
            is_apart = !text.empty();
        } else {
            text.append(is_apart ? " " : "").push_back(each);
            is_apart = false;
        }
    }
    return text;
}

}  // namespace host::changes
