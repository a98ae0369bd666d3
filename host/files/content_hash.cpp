#include "host/files/content_hash.h"

#include <xxhash.h>

#include <bit>
#include <new>

namespace host {

void ContentHash::Deleter::operator()(XXH3_state_s* state) const {
    XXH3_freeState(state);
}

ContentHash::ContentHash() : state_(XXH3_createState()) {
    if (state_ == nullptr) {
        throw std::bad_alloc();
    }
    XXH3_64bits_reset(state_.get());
}

void ContentHash::add(std::string_view bytes) {
    XXH3_64bits_update(state_.get(), bytes.data(), bytes.size());
}

std::int64_t ContentHash::value() const {
    const auto hash = std::bit_cast<std::int64_t>(XXH3_64bits_digest(state_.get()));
    return hash == 0 ? 1 : hash;
}

}  // namespace host
