#include "embedded/sqlite/descriptions.h"

namespace embedded {

Descriptions::Descriptions(const storage::Database& db)
    : row_(db.connection(), "SELECT signature, documentation FROM descriptions WHERE symbol_id = ?1") {}

Description Descriptions::of(storage::SymbolId declaration) {
    row_.reset();
    row_.bind(1, declaration);
    return row_.step() ? Description{row_.text(0), row_.text(1)} : Description();
}

}  // namespace embedded
