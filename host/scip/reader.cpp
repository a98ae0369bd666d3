#include "host/scip/reader.h"

#include <array>

namespace host::scip {

namespace {

using protozero::pbf_reader;

// A field's number together with its wire type, as `pbf_reader::tag_and_type` gives it.

constexpr std::uint32_t number(protozero::pbf_tag_type field) {
    return protozero::tag_and_type(field, protozero::pbf_wire_type::varint);
}

constexpr std::uint32_t bytes_of(protozero::pbf_tag_type field) {
    return protozero::tag_and_type(field, protozero::pbf_wire_type::length_delimited);
}

pbf_reader fields_of(std::string_view message) {
    return {message.data(), message.size()};
}

std::string_view take_text(pbf_reader& fields) {
    const protozero::data_view view = fields.get_view();
    return {view.data(), view.size()};
}

// Gathers the numbers of a range: [line, column, end column] or [line, column, end line, end column].
class RangeNumbers {
  public:
    void add(std::int32_t value) {
        if (count_ < values_.size()) {
            values_.at(count_) = value;
        }
        ++count_;
    }

    void add_packed(pbf_reader& fields) {
        for (const std::int32_t value : fields.get_packed_int32()) {
            add(value);
        }
    }

    [[nodiscard]] std::optional<Range> range() const {
        const auto& [line, column, third, fourth] = values_;
        if (count_ == 3) {
            return Range{line, column, line, third};
        }
        if (count_ == 4) {
            return Range{line, column, third, fourth};
        }
        return std::nullopt;
    }

  private:
    std::array<std::int32_t, 4> values_{};
    std::size_t count_ = 0;
};

Range read_single_line_range(pbf_reader fields) {
    Range range;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case number(field::SINGLE_LINE_RANGE_LINE):
            range.start_line = range.end_line = fields.get_int32();
            break;
        case number(field::SINGLE_LINE_RANGE_START_COLUMN):
            range.start_column = fields.get_int32();
            break;
        case number(field::SINGLE_LINE_RANGE_END_COLUMN):
            range.end_column = fields.get_int32();
            break;
        default:
            fields.skip();
        }
    }
    return range;
}

Range read_multi_line_range(pbf_reader fields) {
    Range range;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case number(field::MULTI_LINE_RANGE_START_LINE):
            range.start_line = fields.get_int32();
            break;
        case number(field::MULTI_LINE_RANGE_START_COLUMN):
            range.start_column = fields.get_int32();
            break;
        case number(field::MULTI_LINE_RANGE_END_LINE):
            range.end_line = fields.get_int32();
            break;
        case number(field::MULTI_LINE_RANGE_END_COLUMN):
            range.end_column = fields.get_int32();
            break;
        default:
            fields.skip();
        }
    }
    return range;
}

void read_tool_info(pbf_reader fields, Metadata& metadata) {
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case bytes_of(field::TOOL_NAME):
            metadata.tool_name = take_text(fields);
            break;
        case bytes_of(field::TOOL_VERSION):
            metadata.tool_version = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
}

std::string_view read_signature(pbf_reader fields) {
    std::string_view text;
    while (fields.next(field::DOCUMENT_TEXT, protozero::pbf_wire_type::length_delimited)) {
        text = take_text(fields);
    }
    return text;
}

}  // namespace

Metadata Metadata::read(std::string_view message) {
    Metadata metadata;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case bytes_of(field::METADATA_TOOL):
            read_tool_info(fields.get_message(), metadata);
            break;
        case bytes_of(field::METADATA_PROJECT_ROOT):
            metadata.project_root = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
    return metadata;
}

Occurrence Occurrence::read(std::string_view message) {
    Occurrence occurrence;
    RangeNumbers own;
    RangeNumbers enclosing;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case number(field::OCCURRENCE_RANGE):
            own.add(fields.get_int32());
            break;
        case bytes_of(field::OCCURRENCE_RANGE):
            own.add_packed(fields);
            break;
        case bytes_of(field::OCCURRENCE_SYMBOL):
            occurrence.symbol = take_text(fields);
            break;
        case number(field::OCCURRENCE_ROLES):
            occurrence.roles = fields.get_int32();
            break;
        case number(field::OCCURRENCE_ENCLOSING_RANGE):
            enclosing.add(fields.get_int32());
            break;
        case bytes_of(field::OCCURRENCE_ENCLOSING_RANGE):
            enclosing.add_packed(fields);
            break;
        case bytes_of(field::OCCURRENCE_SINGLE_LINE_RANGE):
            occurrence.range = read_single_line_range(fields.get_message());
            break;
        case bytes_of(field::OCCURRENCE_MULTI_LINE_RANGE):
            occurrence.range = read_multi_line_range(fields.get_message());
            break;
        case bytes_of(field::OCCURRENCE_SINGLE_LINE_ENCLOSING_RANGE):
            occurrence.enclosing_range = read_single_line_range(fields.get_message());
            break;
        case bytes_of(field::OCCURRENCE_MULTI_LINE_ENCLOSING_RANGE):
            occurrence.enclosing_range = read_multi_line_range(fields.get_message());
            break;
        default:
            fields.skip();
        }
    }
    if (!occurrence.range) {
        occurrence.range = own.range();
    }
    if (!occurrence.enclosing_range) {
        occurrence.enclosing_range = enclosing.range();
    }
    return occurrence;
}

SymbolInformation SymbolInformation::read(std::string_view message) {
    SymbolInformation information;
    information.message = message;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case bytes_of(field::SYMBOL_NAME):
            information.symbol = take_text(fields);
            break;
        case number(field::SYMBOL_KIND):
            information.kind = static_cast<SymbolKind>(fields.get_enum());
            break;
        case bytes_of(field::SYMBOL_DISPLAY_NAME):
            information.display_name = take_text(fields);
            break;
        case bytes_of(field::SYMBOL_SIGNATURE):
            information.signature = read_signature(fields.get_message());
            break;
        default:
            fields.skip();
        }
    }
    return information;
}

Repeated<TextElement> SymbolInformation::documentation() const {
    return {message, field::SYMBOL_DOCUMENTATION};
}

Heading Document::heading() const {
    Heading heading;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case bytes_of(field::DOCUMENT_PATH):
            heading.path = take_text(fields);
            break;
        case bytes_of(field::DOCUMENT_LANGUAGE):
            heading.language = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
    return heading;
}

Repeated<Occurrence> Document::occurrences() const {
    return {message, field::DOCUMENT_OCCURRENCES};
}

Repeated<SymbolInformation> Document::symbols() const {
    return {message, field::DOCUMENT_SYMBOLS};
}

}  // namespace host::scip
