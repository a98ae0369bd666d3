#include "embedded/database.h"

namespace storage {

models::Text Database::text(std::string_view characters) {
    const auto known = texts_.find(characters);
    return known != texts_.end() ? *known : *texts_.insert(models::Text(characters)).first;
}

}  // namespace storage
