#include "host/serve/message_stream.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace host::serve {

namespace {

// Whether a failed call may be tried again. Waits first when the descriptor is not ready.
bool can_go_on(int descriptor, short event) {
    if (errno == EAGAIN || errno == EWOULDBLOCK) {
        pollfd ready{descriptor, event, 0};
        poll(&ready, 1, -1);
        return true;
    }
    return errno == EINTR;
}

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

}  // namespace

MessageReader::Outcome MessageReader::next(std::string& line) {
    while (true) {
        const std::size_t end = buffer_.find('\n', searched_);
        if (end != std::string::npos) {
            const std::string_view found = std::string_view(buffer_).substr(begin_, end - begin_);
            begin_ = searched_ = end + 1;
            if (std::exchange(is_skipping_, false)) {
                continue;
            }
            if (found.size() > longest_) {
                return Outcome::TOO_LONG;
            }
            if (!is_blank(found)) {
                line = found;
                return Outcome::LINE;
            }
            continue;
        }
        buffer_.erase(0, begin_);
        begin_ = 0;
        if (is_skipping_ || buffer_.size() > longest_) {
            buffer_ = {};
            searched_ = 0;
            if (!std::exchange(is_skipping_, true)) {
                return Outcome::TOO_LONG;
            }
        }
        searched_ = buffer_.size();
        if (!read_more()) {
            line = std::exchange(buffer_, {});
            searched_ = 0;
            return is_blank(line) ? Outcome::END : Outcome::LINE;
        }
    }
}

bool MessageReader::read_more() {
    constexpr std::size_t USUAL = 1'048'576;  // bytes; a larger buffer is freed after a long line
    if (buffer_.empty() && buffer_.capacity() > USUAL) {
        buffer_.shrink_to_fit();
    }
    std::array<char, 65'536> piece{};
    while (true) {
        const ssize_t size = read(descriptor_, piece.data(), piece.size());
        if (size >= 0) {
            buffer_.append(piece.data(), static_cast<std::size_t>(size));
            return size > 0;
        }
        if (!can_go_on(descriptor_, POLLIN)) {
            return false;
        }
    }
}

void MessageWriter::send(std::string_view message) {
    std::string line(message);
    line += '\n';
    const std::scoped_lock lock(mutex_);
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t size = write(descriptor_, rest.data(), rest.size());
        if (size >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(size));
        } else if (!can_go_on(descriptor_, POLLOUT)) {
            on_failure_(std::generic_category().message(errno));
            return;
        }
    }
}

Batch::~Batch() {
    send_answers();
}

void Batch::send(std::string_view message) {
    constexpr std::size_t BETWEEN = 3;  // bytes: brackets and a comma
    const std::scoped_lock lock(mutex_);
    if (answers_.size() + message.size() + BETWEEN > LONGEST_MESSAGE) {
        send_answers();
    }
    answers_.append(answers_.empty() ? "" : ",").append(message);
}

void Batch::send_answers() {
    if (!answers_.empty()) {
        out_->send("[" + std::exchange(answers_, {}) + "]");
    }
}

}  // namespace host::serve
