// Arbitrary bytes as a SCIP file and as a symbol, without an index: many more of them in the same time.

#include "fixtures/temporary_folder.h"
#include "fuzz/promise.h"
#include "host/indexing/references.h"
#include "host/scip/contents.h"
#include "host/scip/declarations.h"
#include "host/scip/extract.h"
#include "host/scip/symbol.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace host::scip;
namespace indexing = host::indexing;
using fuzz::promise;
using host::TextSpool;

constexpr int KINDS = 11;

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

void check_symbol(std::string_view symbol) {
    if (const auto parts = parse_symbol(symbol)) {
        std::string again = "scheme manager package version ";
        for (const Descriptor& descriptor : parts->descriptors) {
            again += spelled(descriptor);
        }
        const auto parsed = parse_symbol(again);
        promise(parsed && parsed->descriptors == parts->descriptors,
                "descriptors that are written out parse to the same");
        promise(parts->head.size() <= parts->scope.size() && parts->scope.size() < symbol.size(),
                "the head of a symbol ends before its scope does, and that before the symbol");
    }
}

void check_declaration(std::string_view symbol, const Description& description) {
    const auto parts = parse_symbol(symbol);
    promise(parts && !parts->descriptors.empty(), "a symbol with a number has descriptors");
    if (is_declaration(parts->descriptors.back(), description.kind)) {
        promise(!name_of(parts->descriptors, description).empty() && !fqn_of(parts->descriptors).empty(),
                "a declaration has names");
        promise(rank_of_kind(kind_of(parts->descriptors, description, {})) < KINDS, "a declaration has a known kind");
    }
}

void check_declarations(const indexing::FileDeclarations& declared, TextSpool& spool) {
    for (const indexing::Declaration& declaration : declared.declarations) {
        promise(1 <= declaration.lines.first && declaration.lines.first <= declaration.lines.last,
                "a declaration has lines of a file");
        promise(spool.read(declaration.signature).size() == declaration.signature.size,
                "a text comes back from the spool");
    }
    for (const indexing::DeclaredSymbol& symbol : declared.symbols) {
        promise(symbol.declaration < declared.declarations.size(), "a symbol that is declared leads to a declaration");
    }
}

void check_file(const FileContents& file, const Contents& contents) {
    promise(file.documents > 0, "a file has documents");
    for (const Definition& definition : file.definitions) {
        const auto description = file.descriptions.find(definition.symbol);
        check_declaration(contents.symbols.symbol(definition.symbol),
                          description == file.descriptions.end() ? Description() : description->second);
    }
    for (const auto& [names, references] : file.references) {
        promise(references.count > 0 && references.first_line >= 0, "a reference is counted, and its line is one");
        const auto symbols = contents.tokens.symbols(names);
        promise(!symbols.empty() && symbols.front() != LOCAL_SYMBOL && std::ranges::is_sorted(symbols),
                "a token names symbols, in order, and not local ones alone");
    }
}

void check_extraction(const indexing::Extraction& extraction, TextSpool& spool) {
    const indexing::References references(extraction);
    for (std::uint32_t place = 0; place < extraction.files.size(); ++place) {
        const indexing::ExtractedFile& file = extraction.files[place];
        check_declarations(file.declared, spool);
        std::int64_t counted = 0;
        for (const auto& [names, tokens] : file.references) {
            counted += tokens.count * static_cast<std::int64_t>(extraction.tokens.symbols(names).size());
        }
        for (const indexing::Edge& edge : references.from(place).edges) {
            promise(edge.target.file < extraction.files.size() &&
                        edge.target.declaration < extraction.files[edge.target.file].declared.declarations.size(),
                    "an edge leads to a declaration");
            counted -= edge.references.count;
        }
        promise(counted >= 0, "no token is counted more than once for each of its symbols");
    }
}

void check_scip(const std::string& path) {
    try {
        static const host::TemporaryFolder folder;
        TextSpool spool(folder / "texts");
        ScipFile scip(host::InputFile(path, folder / "copy", [] {}), [] {});
        std::int64_t read = 0;
        std::size_t begun = 0;
        const ContentsListener listener{.new_file = [&](auto&, auto&) { ++begun; }, .after_document = [&] { ++read; }};
        Contents contents = read_contents({{{&scip, ""}}}, spool, listener);
        promise(std::cmp_equal(read, scip.document_count()), "every document is read once");
        promise(begun == contents.files.size(), "every file begins once");
        std::int64_t documents = contents.unusable_documents;
        for (const auto& [name, file] : contents.files) {
            documents += static_cast<std::int64_t>(file.documents);
            check_file(file, contents);
        }
        promise(documents == read, "a document belongs to a file or is unusable");
        indexing::ImportReport report;
        check_extraction(extract(
                             std::move(contents), {}, [] {}, report),
                         spool);
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
