#include "host/scip/symbol.h"

#include "host/scip/language.h"

#include <algorithm>
#include <utility>

namespace host::scip {

namespace {

constexpr std::string_view GETTER = "<get>";
constexpr std::string_view SETTER = "<set>";

// The functions that take something take it from the front of `rest`; having failed, they leave `rest` anywhere.

bool take(std::string_view& rest, char expected) {
    if (!rest.starts_with(expected)) {
        return false;
    }
    rest.remove_prefix(1);
    return true;
}

// Takes a part before the descriptors with the single space that ends it; a doubled space belongs to the part. It is
// none when there is no such part, and as it stands otherwise.
std::optional<std::string_view> take_part(std::string_view& rest) {
    for (std::size_t space = rest.find(' '); space != std::string_view::npos; space = rest.find(' ', space + 2)) {
        if (!rest.substr(space + 1).starts_with(' ')) {
            const std::string_view part = rest.substr(0, space);
            rest.remove_prefix(space + 1);
            return part.empty() ? std::nullopt : std::optional(part);
        }
    }
    return std::nullopt;
}

std::string with_single_spaces(std::string_view part) {
    std::string text;
    for (std::size_t at = 0; at < part.size(); at += part.substr(at).starts_with("  ") ? 2 : 1) {
        text += part[at];
    }
    return text;
}

std::string with_doubled_spaces(std::string_view text) {
    std::string part;
    for (const char character : text) {
        part.append(character == ' ' ? 2 : 1, character);
    }
    return part;
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

// scip-python names a variable with an annotation twice: `a.b`/x.x.
bool is_said_again(const Descriptor& descriptor, const Symbol& symbol) {
    return descriptor.suffix == Suffix::TERM && !symbol.descriptors.empty() &&
           symbol.descriptors.back() == descriptor && symbol.head.starts_with("scip-python ");
}

}  // namespace

bool is_local(std::string_view symbol) {
    return symbol.starts_with("local ");
}

std::optional<Symbol> parse_symbol(std::string_view symbol) {
    std::string_view rest = symbol;
    const auto scheme = take_part(rest);
    const auto manager = scheme ? take_part(rest) : std::nullopt;
    const auto package = manager ? take_part(rest) : std::nullopt;
    const auto version = package ? take_part(rest) : std::nullopt;
    if (!version || symbol.size() > LONGEST_SYMBOL) {
        return std::nullopt;
    }
    const auto before_rest = [&] { return symbol.substr(0, symbol.size() - rest.size()); };
    Symbol result{.head = before_rest(), .package = with_single_spaces(*package), .scope = {}, .descriptors = {}};
    do {
        const std::string_view scope = before_rest();
        std::optional<Descriptor> descriptor = take_descriptor(rest);
        if (!descriptor) {
            return std::nullopt;
        }
        if (!is_said_again(*descriptor, result)) {
            result.scope = scope;
            result.descriptors.push_back(std::move(*descriptor));
        }
    } while (!rest.empty());
    return result;
}

std::optional<std::string> file_of_nameless_package(std::string_view symbol) {
    std::string_view rest = symbol;
    if (!take_part(rest) || !take_part(rest) || take_part(rest) != ".") {
        return std::nullopt;
    }
    const std::optional<Symbol> parts = parse_symbol(symbol);
    const std::size_t count = parts ? descriptors_of_file(parts->descriptors) : 0;
    return count == 0 ? std::nullopt : module_name(std::span(parts->descriptors).first(count));
}

std::string of_project(std::string_view symbol, std::string_view folder) {
    if (folder.empty() || !file_of_nameless_package(symbol)) {
        return std::string(symbol);
    }
    std::string_view rest = symbol;
    take_part(rest), take_part(rest), take_part(rest);
    const std::size_t version = symbol.size() - rest.size();
    take_part(rest);
    return std::string(symbol.substr(0, version)).append(with_doubled_spaces(folder)).append(" ").append(rest);
}

std::string written(std::string_view name) {
    if (name == "<constructor>" || name == "<init>") {
        return "constructor";
    }
    const bool is_of_property = name.starts_with(GETTER) || name.starts_with(SETTER);
    return std::string(is_of_property && name.size() > GETTER.size() ? name.substr(GETTER.size()) : name);
}

bool is_accessor(const Descriptor& symbol) {
    return symbol.name.starts_with(GETTER) || symbol.name.starts_with(SETTER);
}

bool is_constructor_name(std::string_view name) {
    return name == "<constructor>" || name == "__init__" || name == "<init>";
}

std::size_t descriptors_of_file(std::span<const Descriptor> descriptors) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < descriptors.size() && descriptors[at].suffix == Suffix::NAMESPACE; ++at) {
        count = language_of({}, descriptors[at].name).empty() ? count : at + 1;
    }
    return count;
}

std::optional<std::string> module_name(std::span<const Descriptor> descriptors) {
    const bool is_python = descriptors.back().suffix == Suffix::META && descriptors.back().name == "__init__";
    if (!is_python && descriptors_of_file(descriptors) != descriptors.size()) {
        return std::nullopt;
    }
    std::string name;
    for (const Descriptor& descriptor : descriptors.first(descriptors.size() - (is_python ? 1 : 0))) {
        name.append(name.empty() ? "" : "/").append(descriptor.name);
    }
    return name;
}

std::string_view scope_of_module(std::string_view module) {
    constexpr std::string_view MODULE_OF_PYTHON = "__init__:";
    return module.substr(0, module.size() - (module.ends_with(MODULE_OF_PYTHON) ? MODULE_OF_PYTHON.size() : 0));
}

std::string spelled(const Descriptor& descriptor) {
    std::string name;
    for (const char character : descriptor.name) {
        name.append(character == '`' ? 2 : 1, character);
    }
    if (!std::ranges::all_of(descriptor.name, is_plain)) {
        name = '`' + name + '`';
    }
    switch (descriptor.suffix) {
    case Suffix::NAMESPACE:
        return name + '/';
    case Suffix::TYPE:
        return name + '#';
    case Suffix::TERM:
        return name + '.';
    case Suffix::METHOD:
        return name + "().";
    case Suffix::MACRO:
        return name + '!';
    case Suffix::META:
        return name + ':';
    case Suffix::TYPE_PARAMETER:
        return '[' + name + ']';
    case Suffix::PARAMETER:
        return '(' + name + ')';
    }
    return name;
}

bool is_module_of(std::span<const Descriptor> descriptors, std::string_view path) {
    const Descriptor& last = descriptors.back();
    if (last.suffix == Suffix::META) {
        return last.name == "__init__";
    }
    return descriptors_of_file(descriptors) == descriptors.size() && last.name == path.substr(path.rfind('/') + 1);
}

bool is_built_in(std::string_view symbol) {
    constexpr std::string_view MODULE = " builtins/";
    const std::size_t module = symbol.find(MODULE);
    return module != std::string_view::npos && symbol.starts_with("scip-python ") &&
           symbol.substr(module + MODULE.size()).find_first_of("#.:") + 1 == symbol.size() - module - MODULE.size();
}

bool is_augmentation(std::span<const Descriptor> descriptors) {
    const std::size_t file = descriptors_of_file(descriptors);
    return file > 0 && std::ranges::any_of(descriptors.subspan(file), [](const Descriptor& descriptor) {
               return descriptor.suffix == Suffix::NAMESPACE &&
                      (descriptor.name == "global" || descriptor.name.front() == '"' ||
                       descriptor.name.front() == '\'');
           });
}

}  // namespace host::scip
