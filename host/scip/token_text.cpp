#include "host/scip/token_text.h"

#include "host/scip/declarations.h"
#include "host/scip/symbol.h"
#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <utility>

namespace host::scip {

namespace {

// Whether the symbol ends with the text as the name of its last descriptor. Tells most that bear it, at little cost.
bool ends_with_name(std::string_view symbol, std::string_view text) {
    const std::size_t at = text.empty() ? std::string_view::npos : symbol.rfind(text);
    if (at == std::string_view::npos || at == 0) {
        return false;
    }
    const std::string_view rest = symbol.substr(at + text.size());
    const bool is_whole = std::string_view("/#.:").find(symbol[at - 1]) != std::string_view::npos;
    return is_whole && (rest == "#" || rest == "." || rest == "().");
}

// "a as b" -> "a", "m.f" -> "f"
std::string_view named_by(std::string_view text) {
    if (const std::size_t as = text.find(" as "); as != std::string_view::npos) {
        text = trimmed(text.substr(0, as));
    }
    return text.substr(text.rfind('.') + 1);
}

// "b", "a.b" and ".b" may name the module a.b.
bool may_name_module(std::string_view text, std::string_view module) {
    text = trimmed(text.substr(0, text.find(" as ")));
    text.remove_prefix(std::min(text.find_first_not_of('.'), text.size()));
    const bool is_end = module.ends_with(text);
    return text.empty() || (is_end && (module.size() == text.size() || module[module.size() - text.size() - 1] == '.'));
}

}  // namespace

RangedText::RangedText(std::string text) : text_(std::move(text)), lines_{0} {
    if (text_.starts_with(BYTE_ORDER_MARK)) {
        text_.erase(0, BYTE_ORDER_MARK.size());
    }
    for (std::size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n', end + 1)) {
        lines_.push_back(end + 1);
    }
}

std::string_view RangedText::at(const Range& range) {
    const std::optional<std::size_t> begin = offset_of(range.start_line, range.start_column);
    const std::optional<std::size_t> end = offset_of(range.end_line, range.end_column);
    return begin && end && *begin < *end ? std::string_view(text_).substr(*begin, *end - *begin) : std::string_view();
}

std::optional<std::uint32_t> RangedText::offset_of(const Range& range) {
    const std::optional<std::size_t> offset = offset_of(range.start_line, range.start_column);
    return offset ? std::optional(static_cast<std::uint32_t>(*offset)) : std::nullopt;
}

std::string_view RangedText::behind(const Range& range) {
    const std::optional<std::size_t> end = offset_of(range.end_line, range.end_column);
    const std::string_view rest = end ? std::string_view(text_).substr(*end) : std::string_view();
    return rest.substr(0, rest.find('\n'));
}

std::string_view RangedText::with_name_before(std::string_view part) const {
    const auto offset = part.empty() ? 0 : static_cast<std::size_t>(part.data() - text_.data());
    if (offset < 2 || text_[offset - 1] != '.') {
        return part;
    }
    std::size_t begin = offset - 1;
    while (begin > 0 && is_part_of_name(text_[begin - 1])) {
        --begin;
    }
    return std::string_view(text_).substr(begin, offset - begin + part.size());
}

std::optional<std::size_t> RangedText::offset_of(std::int32_t line, std::int32_t column) {
    if (line < 0 || column < 0 || static_cast<std::size_t>(line) >= lines_.size()) {
        return std::nullopt;
    }
    if (line != line_ || column < column_) {
        line_ = line;
        column_ = 0;
        offset_ = lines_[static_cast<std::size_t>(line)];
    }
    const std::string_view rest =
        from_column(std::string_view(text_).substr(offset_), static_cast<std::size_t>(column - column_));
    offset_ = text_.size() - rest.size();
    column_ = column;
    return offset_;
}

bool may_name(std::string_view text, std::string_view symbol) {
    if (ends_with_name(symbol, text)) {
        return true;
    }
    const std::optional<Symbol> parts = parse_symbol(symbol);
    if (parts && parts->descriptors.back().suffix == Suffix::META) {
        return may_name_module(text, module_name(parts->descriptors).value_or(""));
    }
    if (!parts || !is_declaration(parts->descriptors.back(), SymbolKind::UNSPECIFIED)) {
        return true;
    }
    const std::vector<Descriptor>& names = parts->descriptors;
    const std::string_view name = named_by(text);
    const bool is_constructor = names.size() > 1 && is_constructor_name(names.back().name);
    return name == written(names.back().name) || (is_constructor && name == names[names.size() - 2].name);
}

}  // namespace host::scip
