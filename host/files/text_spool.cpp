#include "host/files/text_spool.h"

#include <algorithm>
#include <utility>

namespace host {

SpooledText TextSpool::add(std::string_view text) {
    constexpr std::size_t ENOUGH = 1'048'576;  // bytes to collect for one call of the system
    const std::lock_guard lock(mutex_);
    const SpooledText added{file_.size() + end_.size(), text.size()};
    end_ += text;
    if (end_.size() >= ENOUGH) {
        flush();
    }
    return added;
}

std::string TextSpool::read(const SpooledText& text) {
    constexpr std::uint64_t AT_ONCE = 65'536;  // bytes: texts are mostly read in the order in which they were added
    if (text.empty()) {
        return {};
    }
    const std::lock_guard lock(mutex_);
    if (text.offset + text.size > file_.size()) {
        flush();
    }
    if (text.offset < read_from_ || text.offset + text.size > read_from_ + read_.size()) {
        std::string part(std::max(text.size, std::min(AT_ONCE, file_.size() - text.offset)), '\0');
        file_.read(text.offset, part);
        read_ = std::move(part);
        read_from_ = text.offset;
    }
    return read_.substr(text.offset - read_from_, text.size);
}

void TextSpool::flush() {
    file_.append(end_);
    end_.clear();
}

}  // namespace host
