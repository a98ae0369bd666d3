// What was read of source files, kept on disk by their contents, so that no text is parsed twice.
#pragma once

#include "host/worktree/source_facts.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ios>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host::worktree {

/// A file of facts. What is damaged in it, or was written by another program, is as good as not there; where it cannot
/// be written, nothing is kept. To be used by one process at a time, and in that by any number of threads.
class FactsStore {
  public:
    /// `writer` tells this program from others.
    FactsStore(std::string path, const std::string& writer);
    /// Drops what has not been asked for, if that is the greater part.
    ~FactsStore();
    FactsStore(const FactsStore&) = delete;
    FactsStore& operator=(const FactsStore&) = delete;

    /// Returns what an earlier store was given for a file with this content and a path that ends alike.
    [[nodiscard]] std::optional<SourceFacts> find(std::int64_t content_hash, std::string_view path);

    /// Returns the surface of these facts, and reads no more.
    [[nodiscard]] std::optional<SourceFacts> find_surface(std::int64_t content_hash, std::string_view path);

    /// Returns whether one of the names of these facts is wanted, and reads no more; true where there are none.
    [[nodiscard]] bool have_name(std::int64_t content_hash, std::string_view path,
                                 const std::function<bool(std::string_view name)>& is_wanted);

    void add(std::int64_t content_hash, std::string_view path, const SourceFacts& facts);

  private:
    struct Record {
        std::string_view bytes;
        bool is_used = false;
    };

    std::string_view bytes_of(std::int64_t content_hash, std::string_view path);
    std::size_t read_records();
    void flush();
    void drop_unused();
    bool write(std::string_view bytes, std::ios::openmode mode) const;

    const std::string path_;
    const std::string header_;
    std::string bytes_;  // of the file when it was opened, as far as it is whole
    bool is_writable_ = false;
    std::mutex mutex_;
    std::unordered_map<std::uint64_t, Record> records_;  // of `bytes_`, by key
    std::string added_;                                  // records that are not written yet
};

/// Writes facts as bytes.
std::string to_bytes(const SourceFacts& facts);

/// Reads what `to_bytes` wrote for a file whose path ends as this. Throws `Malformed` for other bytes.
SourceFacts facts_in(std::string_view bytes, std::string_view path);

}  // namespace host::worktree
