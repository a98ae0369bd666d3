#include "host/lookup/index_stats.h"

#include "host/index/notes.h"
#include "host/indexing/report_json.h"

#include <stdexcept>

namespace host {

IndexStats index_stats(storage::Database& db) {
    try {
        return {.index = db.name(), .origin = db.origin(), .report = indexing::read_report(db.noted(notes::REPORT))};
    } catch (const std::invalid_argument&) {
        throw std::runtime_error(db.name() + ": does not say how it was made; import the SCIP file again");
    }
}

}  // namespace host
