#include "embedded/scip/symbol.h"

#include <algorithm>
#include <utility>

namespace embedded::scip {

namespace {

constexpr int PARTS_BEFORE_DESCRIPTORS = 4;

// The functions that take something take it from the front of `rest`; having failed, they leave `rest` anywhere.

bool take(std::string_view& rest, char expected) {
    if (!rest.starts_with(expected)) {
        return false;
    }
    rest.remove_prefix(1);
    return true;
}

// Takes a part before the descriptors with the single space that ends it; a doubled space belongs to the part.
bool take_part(std::string_view& rest) {
    for (std::size_t space = rest.find(' '); space != std::string_view::npos; space = rest.find(' ', space + 2)) {
        if (!rest.substr(space + 1).starts_with(' ')) {
            rest.remove_prefix(space + 1);
            return space > 0;
        }
    }
    return false;
}

bool is_plain(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '_' || byte == '+' || byte == '-' || byte == '$' || byte >= 0x80;
}

std::string take_plain_name(std::string_view& rest) {
    const auto* const end = std::find_if_not(rest.begin(), rest.end(), is_plain);
    std::string name(rest.begin(), end);
    rest.remove_prefix(name.size());
    return name;
}

std::optional<std::string> take_escaped_name(std::string_view& rest) {
    std::string name;
    while (true) {
        const std::size_t backtick = rest.find('`');
        if (backtick == std::string_view::npos) {
            return std::nullopt;
        }
        name += rest.substr(0, backtick);
        rest.remove_prefix(backtick + 1);
        if (!take(rest, '`')) {
            return name;
        }
        name += '`';
    }
}

std::optional<std::string> take_name(std::string_view& rest) {
    std::optional<std::string> name = take(rest, '`') ? take_escaped_name(rest) : take_plain_name(rest);
    return name && !name->empty() ? std::move(name) : std::nullopt;
}

// Takes what follows the opening parenthesis of a method.
bool take_disambiguator(std::string_view& rest) {
    return (rest.starts_with(')') || take_name(rest)) && take(rest, ')') && take(rest, '.');
}

std::optional<Suffix> take_suffix(std::string_view& rest) {
    if (take(rest, '/')) {
        return Suffix::NAMESPACE;
    }
    if (take(rest, '#')) {
        return Suffix::TYPE;
    }
    if (take(rest, '.')) {
        return Suffix::TERM;
    }
    if (take(rest, '(')) {
        return take_disambiguator(rest) ? std::optional(Suffix::METHOD) : std::nullopt;
    }
    if (take(rest, '!')) {
        return Suffix::MACRO;
    }
    if (take(rest, ':')) {
        return Suffix::META;
    }
    return std::nullopt;
}

std::optional<Descriptor> take_bracketed(std::string_view& rest, char closing, Suffix suffix) {
    std::optional<std::string> name = take_name(rest);
    if (!name || !take(rest, closing)) {
        return std::nullopt;
    }
    return Descriptor{std::move(*name), suffix};
}

std::optional<Descriptor> take_descriptor(std::string_view& rest) {
    if (take(rest, '[')) {
        return take_bracketed(rest, ']', Suffix::TYPE_PARAMETER);
    }
    if (take(rest, '(')) {
        return take_bracketed(rest, ')', Suffix::PARAMETER);
    }
    std::optional<std::string> name = take_name(rest);
    const std::optional<Suffix> suffix = name ? take_suffix(rest) : std::nullopt;
    if (!suffix) {
        return std::nullopt;
    }
    return Descriptor{std::move(*name), *suffix};
}

}  // namespace

bool is_local(std::string_view symbol) {
    return symbol.starts_with("local ");
}

std::optional<std::vector<Descriptor>> parse_symbol(std::string_view symbol) {
    for (int part = 0; part < PARTS_BEFORE_DESCRIPTORS; ++part) {
        if (!take_part(symbol)) {
            return std::nullopt;
        }
    }
    std::vector<Descriptor> descriptors;
    do {
        std::optional<Descriptor> descriptor = take_descriptor(symbol);
        if (!descriptor) {
            return std::nullopt;
        }
        descriptors.push_back(std::move(*descriptor));
    } while (!symbol.empty());
    return descriptors;
}

}  // namespace embedded::scip
