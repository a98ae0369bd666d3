#include "host/sources/source_reader.h"

#include "host/files/content_hash.h"
#include "host/summary/text_summary.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace host::sources {

std::optional<std::size_t> Source::find(const Position& position, std::string_view name) const {
    if (!outline) {
        return std::nullopt;
    }
    const std::vector<SourceDeclaration>& all = outline->declarations;
    const auto line_of = [](const SourceDeclaration& declaration) { return declaration.position.line; };
    const auto begin = std::ranges::lower_bound(all, position.line, {}, line_of);
    const auto end = std::ranges::upper_bound(all, position.line, {}, line_of);
    auto found = std::ranges::find(begin, end, position, &SourceDeclaration::position);
    if (found == end && std::ranges::count(begin, end, name, &SourceDeclaration::name) == 1) {
        found = std::ranges::find(begin, end, name, &SourceDeclaration::name);
    }
    return found == end ? std::nullopt : std::optional(static_cast<std::size_t>(found - all.begin()));
}

SourceReader::SourceReader(const Checkout& checkout, TextSpool& spool, Content content)
    : checkout_(checkout), spool_(spool), content_(content) {
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    threads_.reserve(cores);
    try {
        while (threads_.size() < cores) {
            threads_.emplace_back([this] { work(); });
        }
    } catch (const std::system_error&) {  // the system gives no more; fewer do, or none
    }
}

SourceReader::~SourceReader() {
    {
        const std::lock_guard lock(mutex_);
        is_cancelled_ = true;
    }
    requested_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void SourceReader::request(const std::string& path, const std::string& language) {
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back({path, language});
        ++pending_;
    }
    requested_.notify_one();
}

Sources SourceReader::finish(const std::function<void()>& check_interrupt) {
    constexpr std::chrono::milliseconds PERIOD(20);
    std::unique_lock lock(mutex_);
    while (pending_ > 0 && failure_ == nullptr) {
        if (threads_.empty()) {
            read_next(lock);
        } else {
            done_.wait_for(lock, PERIOD);
        }
        lock.unlock();
        check_interrupt();
        lock.lock();
    }
    if (failure_ != nullptr) {
        std::rethrow_exception(failure_);
    }
    return std::move(sources_);
}

void SourceReader::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        requested_.wait(lock, [&] { return is_cancelled_ || !requests_.empty(); });
        if (is_cancelled_) {
            return;
        }
        read_next(lock);
    }
}

void SourceReader::read_next(std::unique_lock<std::mutex>& lock) {
    const Request request = std::move(requests_.front());
    requests_.pop_front();
    lock.unlock();
    std::optional<Source> source;
    std::exception_ptr failure;
    try {
        source = read(request);
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    if (failure != nullptr && failure_ == nullptr) {
        failure_ = failure;
    }
    if (source) {
        sources_.emplace(request.path, std::move(*source));
    }
    if (--pending_ == 0 || failure != nullptr) {
        done_.notify_all();
    }
}

std::optional<Source> SourceReader::read(const Request& request) {
    const std::optional<FileContent> content = checkout_.read(request.path, LARGEST_SOURCE);
    if (!content) {
        return std::nullopt;
    }
    Source source{.content_hash = content->hash, .summary = {}, .outline = std::nullopt, .texts = {}};
    if (content->text) {
        source.summary = text_summary(*content->text);
        source.outline = outline_of(*content->text, request.language, request.path, is_cancelled_, content_);
    }
    if (source.outline) {
        source.texts.reserve(source.outline->declarations.size());
        for (SourceDeclaration& declaration : source.outline->declarations) {
            source.texts.push_back({spool_.add(std::exchange(declaration.signature, {})),
                                    spool_.add(std::exchange(declaration.documentation, {}))});
        }
        source.outline->declarations.shrink_to_fit();
    }
    return source;
}

}  // namespace host::sources
