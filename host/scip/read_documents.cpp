#include "host/scip/read_documents.h"

#include "host/scip/extract.h"
#include "host/scip/language.h"
#include "host/scip/namesakes.h"
#include "host/scip/open_tokens.h"
#include "host/scip/undeclared.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace host::scip {

ReadDocuments read_documents(ScipFiles& scip, const Repository& repository, const PathRules& exclusions,
                             const std::optional<Checkout>& checkout, TextSpool& spool, indexing::Progress& progress,
                             indexing::ImportReport& report) {
    std::optional<sources::SourceReader> reader;
    if (checkout) {
        reader.emplace(*checkout, spool, sources::Content::TOKENS);
    }
    const ContentsListener listener{
        .wants = [&](const std::string& path,
                     bool is_generated) { return !exclusions.decide(path).value_or(is_generated); },
        .new_file =
            [&](const std::string& path, const std::string& language) {
                if (reader) {
                    reader->request(path, stated_language(language));
                }
            },
        .text_of = [&](const std::string& path) -> std::optional<std::string> {
            std::optional<FileContent> file = checkout ? checkout->read(path, sources::LARGEST_SOURCE) : std::nullopt;
            return file ? std::move(file->text) : std::nullopt;
        },
        .after_document = [&] { progress.advance(1); },
    };
    const std::vector<PlacedScipFile> placed = scip.placed_in(repository);
    Contents contents = read_contents(placed, spool, listener);
    progress.advance(static_cast<std::size_t>(contents.unusable_documents + contents.unwanted_documents));
    ReadDocuments read;
    read.sources = reader ? reader->finish([&] { progress.report(); }) : sources::Sources();
    UndeclaredByFile undeclared;
    if (checkout) {
        report.checkout = checkout->root();
        undeclared = add_undeclared(contents, read.sources);
        count_locals(placed, undeclared, *checkout, contents);
    }
    settle_open_tokens(contents, read.sources, checkout, report);
    choose_namesakes(contents, read.sources);
    report.unparsed_symbols = static_cast<std::int64_t>(contents.symbols.unparsed());
    report.unusable_documents = contents.unusable_documents;
    report.unusable_definitions = contents.unusable_definitions;
    for (const std::string& path : contents.unwanted) {
        report.excluded.add(path);
    }
    read.unwanted = std::move(contents.unwanted);
    read.extraction = extract(
        std::move(contents), read.sources, [&] { progress.report(); }, report);
    return read;
}

}  // namespace host::scip
