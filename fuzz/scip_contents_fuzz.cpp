// Arbitrary bytes as a SCIP file and as a symbol, without an index: many more of them in the same time.

#include "embedded/scip/contents.h"
#include "embedded/scip/declarations.h"
#include "embedded/scip/symbol.h"
#include "fuzz/promise.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace embedded::scip;
using fuzz::promise;

// A file in memory, which has a path like any other.
class MemoryFile {
  public:
    void fill(std::string_view bytes) const {
        promise(ftruncate(number_, 0) == 0 && pwrite(number_, bytes.data(), bytes.size(), 0) == std::ssize(bytes),
                "there is memory for the input");
    }

    [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(number_); }

  private:
    int number_ = memfd_create("scip", MFD_CLOEXEC);
};

std::string escaped(std::string_view name) {
    std::string escaped = "`";
    for (const char character : name) {
        escaped.append(character == '`' ? 2 : 1, character);
    }
    return escaped + '`';
}

std::string written(const Descriptor& descriptor) {
    const std::string name = escaped(descriptor.name);
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
    return {};
}

void check_symbol(std::string_view symbol) {
    if (const auto descriptors = parse_symbol(symbol)) {
        std::string again = "scheme manager package version ";
        for (const Descriptor& descriptor : *descriptors) {
            again += written(descriptor);
        }
        promise(parse_symbol(again) == descriptors, "descriptors that are written out parse to the same");
    }
}

void check_declaration(std::string_view symbol, const Description& description) {
    constexpr std::array<std::string_view, 11> KINDS{"class",     "struct",   "interface", "enum",
                                                     "type",      "function", "method",    "constructor",
                                                     "attribute", "constant", "variable"};
    const auto descriptors = parse_symbol(symbol);
    promise(descriptors && !descriptors->empty(), "a symbol with a number has descriptors");
    if (const auto declaration = declaration_of(*descriptors, description)) {
        promise(!declaration->name.empty() && !declaration->fqn.empty(), "a declaration has names");
        promise(std::ranges::find(KINDS, declaration->kind) != KINDS.end(), "a declaration has a known kind");
    }
}

void check_file(const FileContents& file, SymbolTable& symbols) {
    promise(file.documents > 0, "a file has documents");
    for (const auto& [symbol, lines] : file.definitions) {
        const auto description = file.descriptions.find(symbol);
        check_declaration(symbols.symbol(symbol),
                          description == file.descriptions.end() ? Description() : description->second);
        promise(!lines || (1 <= lines->first && lines->first <= lines->last && count_of(lines) > 0),
                "the lines of a definition are lines of a file");
    }
    for (const auto& [symbol, references] : file.references) {
        promise(references > 0, "a reference is counted");
        promise(symbols.number(symbols.symbol(symbol)) == symbol, "a symbol keeps its number");
    }
}

void check_scip(const std::string& path) {
    try {
        ScipFile scip(path, [] {});
        std::size_t read = 0;
        Contents contents = read_contents(scip, [&] { ++read; });
        promise(read == scip.document_count(), "every document is read once");
        std::size_t of_files = 0;
        for (const auto& [name, file] : contents.files) {
            of_files += file.documents;
            check_file(file, contents.symbols);
        }
        promise(of_files + contents.unusable_documents == read, "a document belongs to a file or is unusable");
    } catch (const std::runtime_error& error) {
        const std::string_view said = error.what();
        promise(said.starts_with(path + ": "), "a failure names the file");
        promise(said.find('\n') == std::string_view::npos, "a failure is one line");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    const std::string bytes(data, data + size);
    check_symbol(bytes);
    file.fill(bytes);
    check_scip(file.path());
    return 0;
}
