#include "host/worktree/source_reading.h"

#include "host/sources/outline.h"

#include <atomic>
#include <utility>

namespace host::worktree {

ReadFile SourceReading::read(const std::string& path, std::int64_t known_hash) const {
    ReadFile file;
    file.path = path;
    file.content_hash = known_hash;
    std::optional<SourceFacts> facts = known_facts(file);
    file.facts = facts ? std::move(*facts) : read_facts(file);
    file.declarations = spooled(file.facts.declarations, spool_);
    return file;
}

std::optional<SourceFacts> SourceReading::known_facts(const ReadFile& file) const {
    return facts_ == nullptr || file.content_hash == 0 ? std::nullopt : facts_->find(file.content_hash, file.path);
}

SourceFacts SourceReading::read_facts(ReadFile& file) const {
    static const std::atomic<bool> IS_CANCELLED = false;
    const std::optional<FileContent> content = checkout_.read(file.path, sources::LARGEST_SOURCE);
    const bool is_new = content && std::exchange(file.content_hash, content->hash) != content->hash;
    if (std::optional<SourceFacts> facts = is_new ? known_facts(file) : std::nullopt) {
        return std::move(*facts);
    }
    if (!content) {
        file.content_hash = 0;
        return facts_of_name(file.path);
    }
    SourceFacts facts = content->text ? facts_of(*content->text, file.path, IS_CANCELLED) : facts_of_name(file.path);
    if (facts_ != nullptr) {
        facts_->add(file.content_hash, file.path, facts);
    }
    return facts;
}

}  // namespace host::worktree
