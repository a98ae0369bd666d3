#include "host/indexing/report_json.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace host::indexing {

// Defines the conversions that the library looks for, in both directions.
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Examples, count, first)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(EdgeCount, edges, references)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ImportReport, source, tool, checkout, files, declarations, edges, sources,
                                   files_by_language, declarations_by_kind, edges_by_resolution, unparsed_symbols,
                                   unusable_documents, unusable_definitions, misnamed_references,
                                   references_in_test_code, unresolved_by_language, nowhere, missing_modules, excluded,
                                   misnamed_tests, lost_tests, unread, unparsed, damaged, out_of_damage, moved)

std::string to_json(const ImportReport& report) {
    return nlohmann::json(report).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

ImportReport read_report(std::string_view json) {
    try {
        return nlohmann::json::parse(json).get<ImportReport>();
    } catch (const nlohmann::json::exception& error) {
        throw std::invalid_argument(error.what());
    }
}

}  // namespace host::indexing
