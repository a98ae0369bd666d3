#include "embedded/scip/declarations.h"

#include "embedded/ascii.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <utility>

namespace embedded::scip {

namespace {

bool is_lower(char character) {
    return character >= 'a' && character <= 'z';
}

bool is_upper(char character) {
    return character >= 'A' && character <= 'Z';
}

bool is_word(char character) {
    return is_lower(character) || is_upper(character) || (character >= '0' && character <= '9') || character == '_';
}

std::string_view first_word(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    const auto* const end = std::find_if_not(text.begin(), text.end(), is_word);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// A line that opens or closes a block: the positions where it starts, and where the next line does.
struct Fence {
    std::size_t start;
    std::size_t end;
};

// The next fence in the text from the start of a line on.
std::optional<Fence> next_fence(std::string_view text, std::size_t line) {
    while (line < text.size()) {
        const std::size_t end = std::min(text.find('\n', line), text.size() - 1) + 1;
        if (text.substr(line).starts_with("```")) {
            return Fence{line, end};
        }
        line = end;
    }
    return std::nullopt;
}

std::optional<std::string_view> first_fenced_block(std::string_view text) {
    const std::optional<Fence> opening = next_fence(text, 0);
    if (!opening) {
        return std::nullopt;
    }
    const std::optional<Fence> closing = next_fence(text, opening->end);
    return text.substr(opening->end, closing ? closing->start - opening->end : std::string_view::npos);
}

std::string_view signature_of(const SymbolInformation& information) {
    if (!information.signature.empty()) {
        return information.signature;
    }
    Repeated<TextElement> documentation = information.documentation();
    while (const std::optional<TextElement> element = documentation.next()) {
        if (const std::optional<std::string_view> block = first_fenced_block(element->text)) {
            return *block;
        }
    }
    return {};
}

bool is_module(SymbolKind kind) {
    return kind == SymbolKind::MODULE || kind == SymbolKind::NAMESPACE || kind == SymbolKind::PACKAGE ||
           kind == SymbolKind::PACKAGE_OBJECT || kind == SymbolKind::LIBRARY;
}

bool is_parameter(SymbolKind kind) {
    return kind == SymbolKind::PARAMETER || kind == SymbolKind::SELF_PARAMETER || kind == SymbolKind::TYPE_PARAMETER;
}

// Whether what the symbol names declares nothing: a scope only, or a name of some signature.
bool declares_nothing(Suffix suffix, SymbolKind kind) {
    switch (suffix) {
    case Suffix::NAMESPACE:
    case Suffix::META:
    case Suffix::TYPE_PARAMETER:
    case Suffix::PARAMETER:
        return true;
    case Suffix::TYPE:
        return is_parameter(kind);
    case Suffix::TERM:
    case Suffix::METHOD:
    case Suffix::MACRO:
        return is_parameter(kind) || is_module(kind);
    }
    return true;
}

// The kind of row for a kind that the indexer states; none when the number says nothing.
std::optional<std::string_view> stated_kind(SymbolKind kind) {
    switch (kind) {
    case SymbolKind::CLASS:
    case SymbolKind::SINGLETON_CLASS:
    case SymbolKind::MIXIN:
    case SymbolKind::EXTENSION:
    case SymbolKind::CONTRACT:
    case SymbolKind::OBJECT:
    case SymbolKind::MESSAGE:
    case SymbolKind::MODULE:
    case SymbolKind::NAMESPACE:
    case SymbolKind::PACKAGE:
    case SymbolKind::PACKAGE_OBJECT:
    case SymbolKind::LIBRARY:
        return "class";
    case SymbolKind::STRUCT:
    case SymbolKind::UNION:
        return "struct";
    case SymbolKind::INTERFACE:
    case SymbolKind::PROTOCOL:
    case SymbolKind::TRAIT:
    case SymbolKind::TYPE_CLASS:
    case SymbolKind::CONCEPT:
        return "interface";
    case SymbolKind::ENUM:
        return "enum";
    case SymbolKind::TYPE:
    case SymbolKind::TYPE_ALIAS:
    case SymbolKind::DELEGATE:
        return "type";
    case SymbolKind::FUNCTION:
    case SymbolKind::MACRO:
    case SymbolKind::OPERATOR:
        return "function";
    case SymbolKind::METHOD:
    case SymbolKind::ABSTRACT_METHOD:
    case SymbolKind::METHOD_ALIAS:
    case SymbolKind::METHOD_SPEC:
    case SymbolKind::PROTOCOL_METHOD:
    case SymbolKind::PURE_VIRTUAL_METHOD:
    case SymbolKind::SINGLETON_METHOD:
    case SymbolKind::STATIC_METHOD:
    case SymbolKind::TRAIT_METHOD:
    case SymbolKind::TYPE_CLASS_METHOD:
    case SymbolKind::GETTER:
    case SymbolKind::SETTER:
    case SymbolKind::ACCESSOR:
        return "method";
    case SymbolKind::CONSTRUCTOR:
        return "constructor";
    case SymbolKind::FIELD:
    case SymbolKind::PROPERTY:
    case SymbolKind::STATIC_DATA_MEMBER:
    case SymbolKind::STATIC_FIELD:
    case SymbolKind::STATIC_PROPERTY:
        return "attribute";
    case SymbolKind::CONSTANT:
    case SymbolKind::ENUM_MEMBER:
        return "constant";
    case SymbolKind::VARIABLE:
    case SymbolKind::VALUE:
    case SymbolKind::STATIC_VARIABLE:
        return "variable";
    default:
        return std::nullopt;
    }
}

std::string_view kind_of_method(bool in_type, std::string_view name) {
    if (!in_type) {
        return "function";
    }
    return name == "<constructor>" || name == "__init__" ? "constructor" : "method";
}

std::string_view kind_of_term(bool in_type, std::string_view name, std::string_view keyword) {
    if (in_type) {
        return "attribute";
    }
    return std::none_of(name.begin(), name.end(), is_lower) || keyword == "const" ? "constant" : "variable";
}

std::string_view kind_of_type(std::string_view keyword) {
    for (const std::string_view kind : {"interface", "enum", "struct", "type"}) {
        if (keyword == kind) {
            return kind;
        }
    }
    return "class";
}

std::string_view inferred_kind(std::span<const Descriptor> descriptors, std::string_view keyword) {
    const Descriptor& symbol = descriptors.back();
    const bool in_type = descriptors.size() > 1 && descriptors[descriptors.size() - 2].suffix == Suffix::TYPE;
    switch (symbol.suffix) {
    case Suffix::METHOD:
        return kind_of_method(in_type, symbol.name);
    case Suffix::MACRO:
        return "function";
    case Suffix::TERM:
        return kind_of_term(in_type, symbol.name, keyword);
    default:
        return kind_of_type(keyword);
    }
}

std::string name_of(const Descriptor& symbol, std::string_view display_name) {
    const std::string_view name = display_name.empty() ? symbol.name : display_name;
    return std::string(name == "<constructor>" ? "constructor" : name);
}

std::string fqn_of(std::span<const Descriptor> descriptors) {
    std::string fqn = descriptors.front().name;
    for (const Descriptor& descriptor : descriptors.subspan(1)) {
        fqn += '.';
        fqn += descriptor.name;
    }
    return fqn;
}

bool is_body(const Descriptor& scope) {
    return scope.suffix == Suffix::METHOD || scope.suffix == Suffix::MACRO || scope.suffix == Suffix::TERM;
}

Lines lines_of(const Range& range) {
    constexpr std::int32_t LAST_LINE = std::numeric_limits<std::int32_t>::max() - 1;
    const bool ends_before_its_last_line = range.end_line > range.start_line && range.end_column == 0;
    const std::int32_t end = ends_before_its_last_line ? range.end_line - 1 : range.end_line;
    const std::int32_t first = std::clamp(range.start_line, 0, LAST_LINE);
    const std::int32_t last = std::clamp(end, first, LAST_LINE);
    return {first + 1, last + 1};
}

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

void Description::add(const SymbolInformation& information) {
    if (kind == SymbolKind::UNSPECIFIED) {
        kind = information.kind;
    }
    if (display_name.empty()) {
        display_name = information.display_name;
    }
    if (!keyword) {
        if (const std::string_view signature = signature_of(information); !signature.empty()) {
            keyword = first_word(signature);
        }
    }
}

std::optional<Declaration> declaration_of(const std::vector<Descriptor>& descriptors, const Description& description) {
    const Descriptor& symbol = descriptors.back();
    if (declares_nothing(symbol.suffix, description.kind)) {
        return std::nullopt;
    }
    const std::optional<std::string_view> stated = stated_kind(description.kind);
    return Declaration{
        .name = name_of(symbol, description.display_name),
        .fqn = fqn_of(descriptors),
        .kind = stated ? *stated : inferred_kind(descriptors, description.keyword.value_or("")),
        .is_export = std::none_of(descriptors.begin(), descriptors.end() - 1, is_body),
    };
}

std::optional<Lines> lines_of(const Occurrence& definition) {
    const auto [own, enclosing] = definition.ranges();
    const std::optional<Range>& range = enclosing ? enclosing : own;
    return range ? std::optional(lines_of(*range)) : std::nullopt;
}

std::int32_t count_of(const std::optional<Lines>& lines) {
    return lines ? lines->last - lines->first + 1 : 0;
}

std::string language_of(std::string_view stated, std::string_view path) {
    const bool says_something = !stated.empty() && stated.find('\0') == std::string_view::npos;
    return lowered(says_something ? stated : language_of_extension(path));
}

}  // namespace embedded::scip
