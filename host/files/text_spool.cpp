#include "host/files/text_spool.h"

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
    const std::lock_guard lock(mutex_);
    if (text.offset + text.size > file_.size()) {
        flush();
    }
    std::string result(text.size, '\0');
    file_.read(text.offset, result);
    return result;
}

void TextSpool::flush() {
    file_.append(end_);
    end_.clear();
}

}  // namespace host
