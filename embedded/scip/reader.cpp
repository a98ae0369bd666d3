#include "embedded/scip/reader.h"

#include <array>

namespace embedded::scip {

namespace {

using protozero::pbf_reader;

constexpr protozero::pbf_tag_type DOCUMENT_OCCURRENCES = 2;
constexpr protozero::pbf_tag_type DOCUMENT_SYMBOLS = 3;

// A field's number together with its wire type, as `pbf_reader::tag_and_type` gives it.

constexpr std::uint32_t number(protozero::pbf_tag_type field) {
    return protozero::tag_and_type(field, protozero::pbf_wire_type::varint);
}

constexpr std::uint32_t bytes_of(protozero::pbf_tag_type field) {
    return protozero::tag_and_type(field, protozero::pbf_wire_type::length_delimited);
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
            return Range{line, line, third};
        }
        if (count_ == 4) {
            return Range{line, third, fourth};
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

Metadata read_metadata(pbf_reader fields) {
    Metadata metadata;
    while (fields.next()) {
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

std::string_view read_signature(pbf_reader fields) {
    std::string_view text;
    while (fields.next(5, protozero::pbf_wire_type::length_delimited)) {
        text = take_text(fields);
    }
    return text;
}

void read_path_and_language(Document& document) {
    pbf_reader fields(document.message.data(), document.message.size());
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case bytes_of(1):
            document.path = take_text(fields);
            break;
        case bytes_of(4):
            document.language = take_text(fields);
            break;
        default:
            fields.skip();
        }
    }
}

std::runtime_error not_scip(const std::string& file) {
    return std::runtime_error(
        file + ": not a SCIP file; give the index.scip that a SCIP indexer, such as scip-typescript, has written");
}

std::runtime_error truncated(const std::string& file, std::size_t offset) {
    return std::runtime_error(file + ": a truncated SCIP file (it ends within the message at byte " +
                              std::to_string(offset) + "); run its indexer again, or copy it again");
}

std::runtime_error damaged(const std::string& file, const std::string& what, std::size_t offset) {
    return std::runtime_error(file + ": a damaged SCIP file (" + what + " at byte " + std::to_string(offset) +
                              " does not parse); run its indexer again, or copy it again");
}

// Whether the first field of a file, which runs past the file's end, is metadata as far as it goes. `field` stands
// behind the field's tag.
bool begins_as_metadata(const pbf_reader& field) {
    const protozero::data_view rest = field.data();
    const char* begin = rest.data();
    const char* const end = begin + rest.size();
    try {
        protozero::decode_varint(&begin, end);
        read_metadata(pbf_reader(begin, static_cast<std::size_t>(end - begin)));
    } catch (const protozero::end_of_buffer_exception&) {
        return true;
    } catch (const protozero::exception&) {
        return false;
    }
    return true;
}

// Passes over a field; false when the file ends before the field does.
bool skips(pbf_reader& fields) {
    try {
        fields.skip();
        return true;
    } catch (const protozero::end_of_buffer_exception&) {
        return false;
    }
}

// Takes the metadata, which stands first in every SCIP file.
Metadata take_metadata(const std::string& file, pbf_reader& fields) {
    bool is_cut = false;
    try {
        if (fields.next() && fields.tag_and_type() == bytes_of(1)) {
            pbf_reader field = fields;
            if (skips(fields)) {
                return read_metadata(field.get_message());
            }
            is_cut = begins_as_metadata(field);
        }
    } catch (const protozero::exception&) {
        is_cut = false;  // neither a field nor the beginning of one
    }
    throw is_cut ? truncated(file, 0) : not_scip(file);
}

}  // namespace

Occurrence Occurrence::read(pbf_reader fields) {
    Occurrence occurrence;
    RangeNumbers range;
    RangeNumbers enclosing_range;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case number(1):
            range.add(fields.get_int32());
            break;
        case bytes_of(1):
            range.add_packed(fields);
            break;
        case bytes_of(2):
            occurrence.symbol = take_text(fields);
            break;
        case number(3):
            occurrence.roles = fields.get_int32();
            break;
        case number(7):
            enclosing_range.add(fields.get_int32());
            break;
        case bytes_of(7):
            enclosing_range.add_packed(fields);
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
        occurrence.range = range.range();
    }
    if (!occurrence.enclosing_range) {
        occurrence.enclosing_range = enclosing_range.range();
    }
    return occurrence;
}

SymbolInformation SymbolInformation::read(pbf_reader fields) {
    SymbolInformation information;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
        case bytes_of(1):
            information.symbol = take_text(fields);
            break;
        case bytes_of(3):
            information.documentation.push_back(take_text(fields));
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

Repeated<Occurrence> Document::occurrences() const {
    return {message, DOCUMENT_OCCURRENCES};
}

Repeated<SymbolInformation> Document::symbols() const {
    return {message, DOCUMENT_SYMBOLS};
}

Index read_index(const MappedFile& file, const std::function<void()>& after_each_document) {
    const std::string_view bytes = file.bytes();
    pbf_reader fields(bytes.data(), bytes.size());
    const auto position = [&] { return bytes.size() - fields.length(); };
    Index index{take_metadata(file.path(), fields), {}};
    std::size_t offset = position();
    try {
        for (; fields.next(); offset = position()) {
            if (fields.tag_and_type() == bytes_of(2)) {
                index.documents.push_back({offset, take_text(fields), {}, {}});
            } else {
                fields.skip();
            }
        }
    } catch (const protozero::end_of_buffer_exception&) {
        throw truncated(file.path(), offset);
    } catch (const protozero::exception&) {
        throw damaged(file.path(), "the field", offset);
    }
    for (Document& document : index.documents) {
        try {
            read_path_and_language(document);
        } catch (const protozero::exception&) {
            throw damaged(file, document);
        }
        file.release(document.message);
        after_each_document();
    }
    return index;
}

std::runtime_error damaged(const MappedFile& file, const Document& document) {
    return damaged(file.path(), "the document", document.offset);
}

}  // namespace embedded::scip
