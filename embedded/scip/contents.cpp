#include "embedded/scip/contents.h"

#include "embedded/scip/symbol.h"

namespace embedded::scip {

namespace {

bool is_usable(std::string_view path) {
    const std::string framed = "/" + std::string(path) + "/";
    return !path.empty() && path.front() != '/' && path.find('\0') == std::string_view::npos &&
           framed.find("/../") == std::string::npos;
}

void add_definition(SymbolNumber symbol, const std::optional<Lines>& lines, FileContents& file) {
    const auto [longest, is_new] = file.definitions.find_or_add(symbol);
    if (is_new || count_of(lines) > count_of(longest)) {
        longest = lines;
    }
}

void add_occurrences(Repeated<Occurrence> occurrences, SymbolTable& symbols, FileContents& file) {
    while (const std::optional<Occurrence> occurrence = occurrences.next()) {
        if (const std::optional<SymbolNumber> symbol = symbols.number(occurrence->symbol)) {
            if (occurrence->is_definition()) {
                add_definition(*symbol, lines_of(*occurrence), file);
            } else {
                ++file.references[*symbol];
            }
        }
    }
}

void add_descriptions(Repeated<SymbolInformation> descriptions, SymbolTable& symbols, FileContents& file) {
    while (const std::optional<SymbolInformation> information = descriptions.next()) {
        if (const std::optional<SymbolNumber> symbol = symbols.number(information->symbol)) {
            file.descriptions[*symbol].add(*information);
        }
    }
}

void add(const Document& document, Contents& contents) {
    const Heading heading = document.heading();
    if (!is_usable(heading.path)) {
        ++contents.unusable_documents;
        return;
    }
    FileContents& file = contents.files[std::string(heading.path)];
    ++file.documents;
    if (file.language.empty()) {
        file.language = heading.language;
    }
    add_occurrences(document.occurrences(), contents.symbols, file);
    add_descriptions(document.symbols(), contents.symbols, file);
}

}  // namespace

std::optional<SymbolNumber> SymbolTable::number(std::string_view symbol) {
    if (symbol.empty() || is_local(symbol)) {
        return std::nullopt;
    }
    if (const auto known = numbers_.find(symbol); known != numbers_.end()) {
        return known->second;
    }
    const auto added = numbers_.emplace(symbol, std::nullopt).first;
    if (parse_symbol(symbol)) {
        added->second = static_cast<SymbolNumber>(symbols_.size());
        symbols_.push_back(added->first);
    }
    return added->second;
}

Contents read_contents(ScipFile& file, const std::function<void()>& after_each_document) {
    Contents contents;
    contents.metadata = file.metadata();
    file.for_each_document([&](const Document& document) {
        add(document, contents);
        after_each_document();
    });
    return contents;
}

}  // namespace embedded::scip
