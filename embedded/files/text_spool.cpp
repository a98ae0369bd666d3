#include "embedded/files/text_spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace embedded {

namespace {

std::runtime_error failure(const std::string& path, const std::string& what) {
    return std::runtime_error(path + ": " + what + " (" + last_system_error() +
                              "); make room on its disk or choose another place");
}

// Has `call(done)` transfer bytes until all of them are; false when it fails or gets no further.
template <class Call>
bool transfer(std::uint64_t size, Call call) {
    for (std::uint64_t done = 0; done < size;) {
        const ssize_t count = call(done);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        done += static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
    }
    return true;
}

}  // namespace

TextSpool::TextSpool(const std::string& path) : path_(path), file_(path, O_RDWR | O_CREAT | O_TRUNC, 0600) {
    if (!file_.is_open()) {
        throw failure(path_, "cannot be made");
    }
    unlink(path_.c_str());
}

SpooledText TextSpool::add(std::string_view text) {
    constexpr std::size_t ENOUGH = 1'048'576;  // bytes that are worth a call of the system
    const std::lock_guard lock(mutex_);
    const SpooledText added{written_ + end_.size(), text.size()};
    end_ += text;
    if (end_.size() >= ENOUGH) {
        flush();
    }
    return added;
}

std::string TextSpool::read(const SpooledText& text) {
    const std::lock_guard lock(mutex_);
    if (text.offset + text.size > written_) {
        flush();
    }
    std::string result(text.size, '\0');
    const bool is_read = transfer(text.size, [&](std::uint64_t done) {
        return pread(file_.number(), result.data() + done, text.size - done, static_cast<off_t>(text.offset + done));
    });
    if (!is_read) {
        throw failure(path_, "cannot be read");
    }
    return result;
}

void TextSpool::flush() {
    const bool is_written = transfer(end_.size(), [&](std::uint64_t done) {
        return pwrite(file_.number(), end_.data() + done, end_.size() - done, static_cast<off_t>(written_ + done));
    });
    if (!is_written) {
        throw failure(path_, "cannot be written");
    }
    written_ += end_.size();
    end_.clear();
}

}  // namespace embedded
