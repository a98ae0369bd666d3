// Reads and parses the sources of a checkout on all cores, in the background.
#pragma once

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/sources/outline.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace host::sources {

/// What is known of a source that could be read.
struct Source {
    struct Texts {
        SpooledText signature;
        SpooledText documentation;
    };

    std::int64_t content_hash = 0;
    std::string summary;  ///< as `wiki::file_summary` gives it
    /// None when the language is not understood, and when the text is none of which there is an outline. The texts of
    /// its declarations are in `texts` instead.
    std::optional<Outline> outline;
    std::vector<Texts> texts;  ///< for each declaration of the outline, in the same order

    /// The place among the declarations of the outline of the one whose name stands at `position` or, should columns be
    /// counted in some other way, is the only `name` on that line. None when there is none, or no outline.
    [[nodiscard]] std::optional<std::size_t> find(const Position& position, std::string_view name) const;
};

/// Sources by path; those that cannot be read are absent.
using Sources = std::unordered_map<std::string, Source>;

/// Reads what it is asked to on threads of its own, one for each core; on fewer where the system gives no more, and in
/// `finish` where it gives none. In memory it keeps what it found out, and of each thread one text and its tree.
class SourceReader {
  public:
    /// Both must outlive the reader.
    SourceReader(const Checkout& checkout, TextSpool& spool, Content content = Content::DECLARATIONS);
    /// Drops what is not read yet.
    ~SourceReader();
    SourceReader(const SourceReader&) = delete;
    SourceReader& operator=(const SourceReader&) = delete;

    /// Has the file at `path` read, once for each path. `language` is what its document states, in lower case.
    void request(const std::string& path, const std::string& language);

    /// Waits for all that was requested, calling `check_interrupt` every few milliseconds. The reader is done then.
    /// Throws what the spool or `check_interrupt` throws.
    Sources finish(const std::function<void()>& check_interrupt);

  private:
    struct Request {
        std::string path;
        std::string language;
    };

    void work();
    // Reads the request that has waited longest. The lock, of the mutex, is released meanwhile.
    void read_next(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] std::optional<Source> read(const Request& request);

    const Checkout& checkout_;
    TextSpool& spool_;
    const Content content_;
    std::atomic<bool> is_cancelled_ = false;

    std::mutex mutex_;
    std::condition_variable requested_;
    std::condition_variable done_;
    std::deque<Request> requests_;
    std::size_t pending_ = 0;  // requests that are waiting or being read
    Sources sources_;
    std::exception_ptr failure_;
    std::vector<std::thread> threads_;
};

}  // namespace host::sources
