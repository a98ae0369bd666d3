#include "host/worktree/checkout_index.h"

#include "host/files/checkout.h"
#include "host/files/file_descriptor.h"
#include "host/rules/configuration.h"
#include "host/rules/repository_rules.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/bytes.h"
#include "host/worktree/cache_folder.h"
#include "host/worktree/facts_store.h"
#include "host/worktree/import.h"
#include "host/worktree/listed_sources.h"
#include "host/worktree/refresh.h"
#include "host/worktree/remembered_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::worktree {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// What tells one file from another that may stand at its path; empty for none.
std::string identity_of(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return "";
    }
    std::string identity;
    for (const auto part :
         {static_cast<std::int64_t>(status.st_ino), static_cast<std::int64_t>(status.st_size),
          static_cast<std::int64_t>(status.st_mtim.tv_sec), static_cast<std::int64_t>(status.st_mtim.tv_nsec)}) {
        identity += std::to_string(part) + " ";
    }
    return identity;
}

std::string this_program() {
    return identity_of("/proc/self/exe");
}

// The time of day, in nanoseconds since 1970.
std::int64_t now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// Holds a lock that other processes wait for.
class ProcessLock {
  public:
    ProcessLock(const std::string& path, const std::function<void()>& check_interrupt)
        : file_(path, O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR) {
        constexpr std::chrono::milliseconds PERIOD(10);
        while (file_.is_open() && flock(file_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            check_interrupt();
            std::this_thread::sleep_for(PERIOD);
        }
        if (!file_.is_open()) {
            throw std::runtime_error(path + ": cannot be written (" + last_system_error().message() +
                                     "); make room on its disk, or name an index with --index");
        }
    }

  private:
    FileDescriptor file_;
};

// All files that an index depends on: its sources, then the manifests.
std::vector<const git::CheckoutFile*> relevant(const ListedSources& listed) {
    std::vector<const git::CheckoutFile*> files;
    for (const auto* const some : {&listed.sources, &listed.manifests}) {
        for (const git::CheckoutFile& file : *some) {
            files.push_back(&file);
        }
    }
    return files;
}

}  // namespace

class CheckoutIndex::Maker {
  public:
    Maker(const std::string& root, indexing::OnProgress on_progress)
        : checkout_(root), folder_(cache_folder(checkout_.root())), index_(folder_ / "index.db"),
          on_progress_(std::move(on_progress)) {}

    [[nodiscard]] const Checkout& checkout() const { return checkout_; }
    [[nodiscard]] const SqliteIndex& index() const { return index_; }

    // The index; made anew if what lies there cannot be opened.
    [[nodiscard]] std::unique_ptr<IndexConnection> connect() {
        refresh();
        if (discard_unusable()) {
            const std::scoped_lock lock(mutex_);
            make_unless_current();
        }
        return index_.connect();
    }

    void refresh() {
        constexpr std::chrono::milliseconds OFTEN_ENOUGH(200);
        const std::scoped_lock lock(mutex_);
        if (refreshed_ && Clock::now() - *refreshed_ < OFTEN_ENOUGH) {
            return;
        }
        make_unless_current();
        refreshed_ = Clock::now();
    }

  private:
    // Removes a file that is no index that this program reads. Returns whether it did.
    [[nodiscard]] bool discard_unusable() const {
        try {
            static_cast<void>(index_.connect());
            return false;
        } catch (const UnusableIndex&) {
        } catch (const IndexError&) {
        }
        std::error_code error;
        return fs::remove(index_.name(), error);
    }

    void make_unless_current() {
        indexing::Progress progress(on_progress_);
        const ProcessLock lock(folder_ / "lock", [&] { progress.report(); });
        const std::int64_t begin = now();
        const RepositoryRules rules = with_repository_rules({}, checkout_);
        const ListedSources listed = list_sources(checkout_, rules.exclusions, [&] { progress.report(); });
        if (listed.sources.empty()) {
            throw std::runtime_error(checkout_.root().string() +
                                     ": no source file is there; go to a checkout, or name one with --checkout");
        }
        const RememberedFiles remembered = read_remembered(memory());
        const std::string origin = this->origin(rules, listed);
        const auto known = remembered.origin == origin ? present_hashes(listed, remembered) : std::nullopt;
        const std::vector<std::uint32_t> changed =
            known ? changed_files(*known, remembered) : std::vector<std::uint32_t>();
        if (known && changed.empty()) {
            if (std::ranges::any_of(remembered.files, is_unsettled)) {
                remember(listed, imported_sources(remembered, listed), *known, begin, origin);
            }
            return;
        }
        FactsStore facts(folder_ / "facts", this_program());
        // From before the import reads them: whatever changes from now on is a change since.
        const std::vector<std::int64_t> hashes = known ? *known : known_hashes(listed, remembered);
        std::optional<std::vector<ImportedSource>> sources;
        if (known && changed.back() < listed.sources.size()) {  // no manifest
            sources = refresh_listed(checkout_, listed, rules, {facts, imported_sources(remembered, listed), changed},
                                     index_, progress);
        }
        if (!sources) {
            static_cast<void>(discard_unusable());  // what is no index is not replaced by one
            const KnownSources known_sources{facts, hashes};
            sources = import_listed(checkout_, listed, rules, &known_sources, *index_.replace(), progress).sources;
        }
        remember(listed, *sources, hashes, begin, this->origin(rules, listed));
    }

    [[nodiscard]] std::string memory() const { return folder_ / "files"; }

    // What the index is of: itself, this program, which rules apply, and what they leave out.
    [[nodiscard]] std::string origin(const RepositoryRules& rules, const ListedSources& listed) const {
        const std::string origin = identity_of(index_.name());
        ByteWriter excluded;
        for (const std::string& path : listed.excluded) {
            excluded.text(path);
        }
        return origin.empty() ? origin
                              : origin + this_program() + to_json(rules.exclusions) + to_json(rules.tests) +
                                    std::to_string(checksum(excluded.bytes()));
    }

    static bool is_unsettled(const RememberedFile& file) { return file.stamp == git::FileStamp(); }

    [[nodiscard]] std::int64_t hash_of(const std::string& path) const {
        const std::optional<FileContent> content = checkout_.read(path, 0);
        return content ? content->hash : 0;
    }

    // The hashes of what the files of an index hold now; none when these are not the files that it was made of. Reads
    // only those of which the system says something else.
    [[nodiscard]] std::optional<std::vector<std::int64_t>> present_hashes(const ListedSources& listed,
                                                                          const RememberedFiles& remembered) const {
        const std::vector<const git::CheckoutFile*> files = relevant(listed);
        const auto is_same_path = [](const git::CheckoutFile* file, const RememberedFile& known) {
            return file->path == known.path;
        };
        if (!std::ranges::equal(files, remembered.files, is_same_path)) {
            return std::nullopt;
        }
        std::vector<std::int64_t> hashes;
        for (std::size_t at = 0; at < files.size(); ++at) {
            const RememberedFile& known = remembered.files[at];
            hashes.push_back(files[at]->stamp == known.stamp ? known.content_hash : hash_of(known.path));
        }
        return hashes;
    }

    static std::vector<std::uint32_t> changed_files(const std::vector<std::int64_t>& hashes,
                                                    const RememberedFiles& remembered) {
        std::vector<std::uint32_t> changed;
        for (std::uint32_t at = 0; at < hashes.size(); ++at) {
            if (hashes[at] != remembered.files[at].content_hash) {
                changed.push_back(at);
            }
        }
        return changed;
    }

    // What is known of the sources of an index, which are the first of its files.
    static std::vector<ImportedSource> imported_sources(const RememberedFiles& remembered,
                                                        const ListedSources& listed) {
        std::vector<ImportedSource> sources;
        for (std::size_t at = 0; at < listed.sources.size(); ++at) {
            sources.push_back({remembered.files[at].content_hash, remembered.files[at].unresolved});
        }
        return sources;
    }

    // The hashes of files that were not all there before: of manifests, and of sources of which the system says nothing
    // new; 0 for others.
    [[nodiscard]] std::vector<std::int64_t> known_hashes(const ListedSources& listed,
                                                         const RememberedFiles& remembered) const {
        std::unordered_map<std::string_view, const RememberedFile*> files;
        for (const RememberedFile& file : remembered.files) {
            files.emplace(file.path, &file);
        }
        std::vector<std::int64_t> hashes;
        for (const git::CheckoutFile& source : listed.sources) {
            const auto found = files.find(source.path);
            hashes.push_back(found != files.end() && found->second->stamp == source.stamp ? found->second->content_hash
                                                                                          : 0);
        }
        std::ranges::transform(listed.manifests, std::back_inserter(hashes),
                               [&](const git::CheckoutFile& file) { return hash_of(file.path); });
        return hashes;
    }

    // `manifests` are the hashes of all files, of which those of the manifests count.
    void remember(const ListedSources& listed, const std::vector<ImportedSource>& sources,
                  const std::vector<std::int64_t>& manifests, std::int64_t begin, std::string origin) const {
        // No file system counts time in larger steps. What changed as late may change again without another stamp.
        constexpr std::int64_t STEP_OF_TIME = 2'000'000'000;
        RememberedFiles remembered{.origin = std::move(origin), .files = {}};
        const std::vector<const git::CheckoutFile*> files = relevant(listed);
        for (std::size_t at = 0; at < files.size(); ++at) {
            const auto& [path, stamp, origin_of_file] = *files[at];
            const bool is_settled = std::max(stamp.modified, stamp.changed) < begin - STEP_OF_TIME;
            const ImportedSource source = at < sources.size() ? sources[at] : ImportedSource{manifests[at], 0};
            remembered.files.push_back(
                {path, is_settled ? stamp : git::FileStamp(), source.content_hash, source.unresolved});
        }
        write_remembered(memory(), remembered);
    }

    const Checkout checkout_;
    const fs::path folder_;
    const SqliteIndex index_;
    const indexing::OnProgress on_progress_;
    std::mutex mutex_;
    std::optional<Clock::time_point> refreshed_;
};

namespace {

template <class Maker>
class CheckoutConnection : public IndexConnection {
  public:
    explicit CheckoutConnection(std::shared_ptr<Maker> maker)
        : maker_(std::move(maker)), connection_(maker_->connect()) {}

    void watch(CheckInterrupt check_interrupt) override { connection_->watch(std::move(check_interrupt)); }
    [[nodiscard]] std::unique_ptr<storage::Database> read() override { return connection_->read(); }
    [[nodiscard]] bool is_current() override {
        maker_->refresh();
        return connection_->is_current();
    }

  private:
    std::shared_ptr<Maker> maker_;
    std::unique_ptr<IndexConnection> connection_;
};

}  // namespace

CheckoutIndex::CheckoutIndex(const std::string& root, indexing::OnProgress on_progress)
    : maker_(std::make_shared<Maker>(root, std::move(on_progress))) {}

CheckoutIndex::~CheckoutIndex() = default;

std::string CheckoutIndex::name() const {
    return maker_->index().name();
}

std::unique_ptr<IndexConnection> CheckoutIndex::connect() const {
    return std::make_unique<CheckoutConnection<Maker>>(maker_);
}

std::string CheckoutIndex::options() const {
    return "--checkout " + maker_->checkout().root().string();
}

std::unique_ptr<NewIndex> CheckoutIndex::replace(CheckInterrupt check_interrupt) const {
    return maker_->index().replace(std::move(check_interrupt));
}

fs::path checkout_around(const fs::path& folder) {
    std::error_code error;
    for (fs::path above = folder; !above.empty(); above = above.parent_path()) {
        if (fs::exists(above / ".git", error) || fs::exists(above / CONFIGURATION_FILE, error)) {
            return above;
        }
        if (above == above.root_path()) {
            break;
        }
    }
    return folder;
}

}  // namespace host::worktree
