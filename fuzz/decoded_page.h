// A page made of arbitrary bytes.
#pragma once

#include "fixtures/collaborators.h"
#include "workers/wiki/scope/facts.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

/// The numbers that a page writer passes to the functions of the component.
struct Numbers {
    std::int64_t total = 0;
    std::int64_t floor = 0;
    double max_share = 0;
    std::int64_t limit = 0;
    std::int64_t per_file = 0;
};

/// A page, as its collaborators tell it. Few distinct paths, names and ids, so that they meet; some of everything
/// that is unusual. Of equal texts some share a buffer and some do not.
struct DecodedPage {
    Numbers numbers;
    std::vector<std::string> missing;
    storage::Database index;
    wiki::scope::OrderedMap<models::Text, std::vector<std::string>> checkout;  ///< path -> lines
};

DecodedPage decode_page(const std::uint8_t* data, std::size_t size);

/// The facts of the page, loaded through the collaborators.
wiki::scope::ScopeFacts load(DecodedPage& page);

}  // namespace fuzz
