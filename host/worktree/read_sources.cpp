#include "host/worktree/read_sources.h"

#include "host/manifests/manifests.h"
#include "host/resolve/resolver.h"
#include "host/threads/all_cores.h"
#include "host/worktree/free_memory.h"
#include "host/worktree/source_reading.h"

#include <cstddef>

namespace host::worktree {

ReadSources::ReadSources(const Checkout& checkout, const ListedSources& listed, const KnownSources* known,
                         TextSpool& spool, indexing::Progress& progress)
    : files_(listed.sources.size()) {
    const SourceReading reading(checkout, known == nullptr ? nullptr : &known->facts, spool);
    const auto read = [&](std::size_t at) {
        files_[at] = reading.read(listed.sources[at].path, known == nullptr ? 0 : known->content_hashes[at]);
        files_[at].facts.declarations = std::vector<DeclarationFacts>();  // {} would keep the memory
    };
    on_all_cores(files_.size(), read, [&](std::size_t count) { progress.advance(count); });
    release_free_memory();
    repository_.packages = manifests::packages_of(checkout, listed.paths);
}

indexing::Extraction ReadSources::extract(const std::vector<resolve::File>& described, indexing::Progress& progress,
                                          indexing::ImportReport& report) {
    for (const ReadFile& file : files_) {
        repository_.files.push_back({file.path, file.facts.dialect, &file.facts.syntax});
    }
    repository_.files.insert(repository_.files.end(), described.begin(), described.end());
    const std::vector<FoundNames> found = resolve_files(described.size(), progress);
    release_free_memory();
    for (const ReadFile& file : files_) {
        imported_.push_back({file.content_hash, file.references.unresolved});
    }
    indexing::Extraction extraction = worktree::extract(files_, repository_, found, report);
    release_free_memory();
    return extraction;
}

std::vector<FoundNames> ReadSources::resolve_files(std::size_t described, indexing::Progress& progress) {
    const resolve::Resolver resolver(repository_);
    on_all_cores(
        files_.size(),
        [&](std::size_t at) {
            resolve_names(files_[at], static_cast<resolve::FileId>(at), resolver);
            files_[at].facts.syntax.mentions = std::vector<syntax::Mention>();  // {} would keep the memory
        },
        [&](std::size_t count) { progress.advance(count); });
    std::vector<FoundNames> found(described);
    on_all_cores(
        found.size(),
        [&](std::size_t at) {
            const auto file = static_cast<resolve::FileId>(files_.size() + at);
            found[at] = {resolver.tokens_of(file), resolver.imports_of(file)};
        },
        [&](std::size_t) { progress.report(); });
    return found;
}

}  // namespace host::worktree
