// The numbers of the fields of SCIP's messages, as its schema assigns them.
#pragma once

#include <protozero/types.hpp>

#include <cstdint>

namespace host::scip::field {

enum Index : protozero::pbf_tag_type {
    INDEX_METADATA = 1,
    INDEX_DOCUMENTS = 2,
};

enum Metadata : protozero::pbf_tag_type {
    METADATA_TOOL = 2,
    METADATA_PROJECT_ROOT = 3,
};

enum ToolInfo : protozero::pbf_tag_type {
    TOOL_NAME = 1,
    TOOL_VERSION = 2,
};

/// A signature is a document, too, of which only the text counts.
enum Document : protozero::pbf_tag_type {
    DOCUMENT_PATH = 1,
    DOCUMENT_OCCURRENCES = 2,
    DOCUMENT_SYMBOLS = 3,
    DOCUMENT_LANGUAGE = 4,
    DOCUMENT_TEXT = 5,
};

/// Older indexers write ranges as lists of numbers, newer ones as messages.
enum Occurrence : protozero::pbf_tag_type {
    OCCURRENCE_RANGE = 1,
    OCCURRENCE_SYMBOL = 2,
    OCCURRENCE_ROLES = 3,
    OCCURRENCE_ENCLOSING_RANGE = 7,
    OCCURRENCE_SINGLE_LINE_RANGE = 8,
    OCCURRENCE_MULTI_LINE_RANGE = 9,
    OCCURRENCE_SINGLE_LINE_ENCLOSING_RANGE = 10,
    OCCURRENCE_MULTI_LINE_ENCLOSING_RANGE = 11,
};

enum SingleLineRange : protozero::pbf_tag_type {
    SINGLE_LINE_RANGE_LINE = 1,
    SINGLE_LINE_RANGE_START_COLUMN = 2,
    SINGLE_LINE_RANGE_END_COLUMN = 3,
};

enum MultiLineRange : protozero::pbf_tag_type {
    MULTI_LINE_RANGE_START_LINE = 1,
    MULTI_LINE_RANGE_START_COLUMN = 2,
    MULTI_LINE_RANGE_END_LINE = 3,
    MULTI_LINE_RANGE_END_COLUMN = 4,
};

enum SymbolInformation : protozero::pbf_tag_type {
    SYMBOL_NAME = 1,
    SYMBOL_DOCUMENTATION = 3,
    SYMBOL_KIND = 5,
    SYMBOL_DISPLAY_NAME = 6,
    SYMBOL_SIGNATURE = 7,
};

/// The bits of OCCURRENCE_ROLES.
enum Role : std::uint32_t {
    ROLE_DEFINITION = 1,
    ROLE_GENERATED = 16,
    ROLE_FORWARD_DEFINITION = 64,
};

}  // namespace host::scip::field
