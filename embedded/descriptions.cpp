#include "embedded/descriptions.h"

#include "embedded/bound_list.h"

namespace embedded {

Descriptions load_descriptions(const storage::Database& db, std::span<const storage::SymbolId> symbol_ids) {
    Statement rows(db.connection(), R"sql(
        SELECT description.symbol_id, description.signature, description.documentation
        FROM json_each(?1) AS page CROSS JOIN descriptions AS description ON description.symbol_id = page.value
    )sql");
    rows.bind(1, bound_list(symbol_ids));
    Descriptions descriptions;
    while (rows.step()) {
        descriptions[rows.integer(0)] = {std::string(rows.text(1)), std::string(rows.text(2))};
    }
    return descriptions;
}

}  // namespace embedded
