#include "host/scip/scip_file.h"

#include "host/files/content_hash.h"

#include <stdexcept>
#include <string_view>
#include <utility>

namespace host::scip {

namespace {

constexpr std::uint32_t METADATA =
    protozero::tag_and_type(field::INDEX_METADATA, protozero::pbf_wire_type::length_delimited);
constexpr std::uint32_t DOCUMENT =
    protozero::tag_and_type(field::INDEX_DOCUMENTS, protozero::pbf_wire_type::length_delimited);

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

// Whether bytes are metadata as far as they go.
bool begin_as_metadata(std::string_view bytes) {
    try {
        Metadata::read(bytes);
        return true;
    } catch (const protozero::end_of_buffer_exception&) {
        return true;
    } catch (const protozero::exception&) {
        return false;
    }
}

}  // namespace

ScipFile::ScipFile(InputFile file, const std::function<void()>& after_each_field) : file_(std::move(file)) {
    std::size_t offset = 0;
    try {
        offset = read_metadata();
    } catch (const protozero::exception&) {
        throw not_scip(name());
    }
    try {
        while (offset < file_.size()) {
            const Field field = field_at(offset);
            if (!is_whole(field)) {
                throw truncated(name(), offset);
            }
            if (field.tag_and_type == DOCUMENT) {
                documents_.push_back(field);
            }
            offset = field.begin + field.size;
            after_each_field();
        }
    } catch (const protozero::end_of_buffer_exception&) {
        throw truncated(name(), offset);
    } catch (const protozero::exception&) {
        throw damaged(name(), "the field", offset);
    }
}

std::int64_t ScipFile::content_hash() {
    constexpr std::size_t PIECE = 262'144;  // bytes
    ContentHash hash;
    for (std::size_t offset = 0; offset < file_.size(); offset += PIECE) {
        hash.add(file_.read(offset, PIECE));
    }
    return hash.value();
}

void ScipFile::for_each_document(const std::function<void(const Document&)>& visit) {
    for (const Field& field : documents_) {
        const std::string_view message = file_.read(field.begin, field.size);
        if (message.size() < field.size) {  // since it was opened
            throw truncated(name(), field.offset);
        }
        try {
            visit(Document{message});
        } catch (const protozero::exception&) {
            throw damaged(name(), "the document", field.offset);
        }
    }
}

ScipFile::Field ScipFile::field_at(std::size_t offset) {
    constexpr std::size_t LONGEST_HEAD = 20;  // bytes: two integers, the tag and the size
    const std::string_view head = file_.read(offset, LONGEST_HEAD);
    protozero::pbf_reader fields(head.data(), head.size());
    if (!fields.next()) {
        throw protozero::end_of_buffer_exception();
    }
    const char* rest = fields.data().data();
    const char* const end = head.data() + head.size();
    std::uint64_t size = 0;
    if (fields.wire_type() == protozero::pbf_wire_type::length_delimited) {
        size = protozero::decode_varint(&rest, end);
    } else {
        fields.skip();
        size = static_cast<std::uint64_t>(fields.data().data() - rest);
    }
    return {offset, offset + static_cast<std::size_t>(rest - head.data()), size, fields.tag_and_type()};
}

bool ScipFile::is_whole(const Field& field) const {
    return field.size <= file_.size() - field.begin;
}

// Reads the metadata, which stands first in every SCIP file, and returns where it ends. Throws `protozero::exception`
// for what is no metadata.
std::size_t ScipFile::read_metadata() {
    Field field{};
    try {
        field = field_at(0);
    } catch (const protozero::end_of_buffer_exception&) {
        throw file_.read(0, 1) == "\x0A" ? truncated(name(), 0) : not_scip(name());
    }
    if (field.tag_and_type != METADATA) {
        throw not_scip(name());
    }
    if (!is_whole(field)) {
        constexpr std::size_t ENOUGH = 65'536;  // bytes, to tell by
        const bool is_cut = begin_as_metadata(file_.read(field.begin, ENOUGH));
        throw is_cut ? truncated(name(), 0) : not_scip(name());
    }
    metadata_ = Metadata::read(file_.read(field.begin, field.size));
    return field.begin + field.size;
}

}  // namespace host::scip
