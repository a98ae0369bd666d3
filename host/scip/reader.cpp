#include "host/scip/reader.h"

#include <array>

namespace host::scip {

namespace {

using protozero::pbf_reader;

constexpr protozero::pbf_tag_type DOCUMENT_OCCURRENCES = 2;
constexpr protozero::pbf_tag_type DOCUMENT_SYMBOLS = 3;
constexpr protozero::pbf_tag_type INFORMATION_DOCUMENTATION = 3;

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
        case number(1):
            range.start_line = range.end_line = fields.get_int32();
            break;
        case number(2):
            range.start_column = fields.get_int32();
            break;
        case number(3):
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
        case number(1):
            range.start_line = fields.get_int32();
            break;
        case number(2):
            range.start_column = fields.get_int32();
            break;
        case number(3):
            range.end_line = fields.get_int32();
            break;
        case number(4):
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
        case bytes_of(1):
            metadata.tool_name = take_text(fields);
            break;
        case bytes_of(2):
            metadata.tool_version = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
}

std::string_view read_signature(pbf_reader fields) {
    std::string_view text;
    while (fields.next(5, protozero::pbf_wire_type::length_delimited)) {
        text = take_text(fields);
    }
    return text;
}

}  // namespace

Metadata Metadata::read(std::string_view message) {
    Metadata metadata;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case bytes_of(2):
            read_tool_info(fields.get_message(), metadata);
            break;
        case bytes_of(3):
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
        case number(1):
            own.add(fields.get_int32());
            break;
        case bytes_of(1):
            own.add_packed(fields);
            break;
        case bytes_of(2):
            occurrence.symbol = take_text(fields);
            break;
        case number(3):
            occurrence.roles = fields.get_int32();
            break;
        case number(7):
            enclosing.add(fields.get_int32());
            break;
        case bytes_of(7):
            enclosing.add_packed(fields);
            break;
        case bytes_of(8):
            occurrence.range = read_single_line_range(fields.get_message());
            break;
        case bytes_of(9):
            occurrence.range = read_multi_line_range(fields.get_message());
            break;
        case bytes_of(10):
            occurrence.enclosing_range = read_single_line_range(fields.get_message());
            break;
        case bytes_of(11):
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
        case bytes_of(1):
            information.symbol = take_text(fields);
            break;
        case number(5):
            information.kind = static_cast<SymbolKind>(fields.get_enum());
            break;
        case bytes_of(6):
            information.display_name = take_text(fields);
            break;
        case bytes_of(7):
            information.signature = read_signature(fields.get_message());
            break;
        default:
            fields.skip();
        }
    }
    return information;
}

Repeated<TextElement> SymbolInformation::documentation() const {
    return {message, INFORMATION_DOCUMENTATION};
}

Heading Document::heading() const {
    Heading heading;
    for (pbf_reader fields = fields_of(message); fields.next();) {
        switch (fields.tag_and_type()) {
        case bytes_of(1):
            heading.path = take_text(fields);
            break;
        case bytes_of(4):
            heading.language = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
    return heading;
}

Repeated<Occurrence> Document::occurrences() const {
    return {message, DOCUMENT_OCCURRENCES};
}

Repeated<SymbolInformation> Document::symbols() const {
    return {message, DOCUMENT_SYMBOLS};
}

}  // namespace host::scip
