// SCIP as it lies in memory, read in place.
//
// A SCIP file is one protobuf message: metadata, then a document for every source file of a repository. A document
// holds the occurrences of symbols in its file, and what its indexer knows of the symbols that the file defines.
// Everything read here is a view of the bytes of the file, and valid as long as it is mapped. Unknown fields are
// passed over, and so are known ones of an unexpected wire type.
#pragma once

#include "embedded/scip/kind.h"
#include "embedded/scip/mapped_file.h"

#include <protozero/pbf_reader.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scip {

/// The elements of a repeated field of a message, read one at a time:
///
///     Repeated<Occurrence> occurrences = document.occurrences();
///     while (const std::optional<Occurrence> occurrence = occurrences.next()) { use(*occurrence); }
///
/// `next` throws `protozero::exception` where the bytes do not parse.
template <class Element>
class Repeated {
  public:
    Repeated(std::string_view message, protozero::pbf_tag_type field)
        : fields_(message.data(), message.size()), field_(field) {}

    /// The next element; none after the last.
    std::optional<Element> next() {
        if (!fields_.next(field_, protozero::pbf_wire_type::length_delimited)) {
            return std::nullopt;
        }
        return Element::read(fields_.get_message());
    }

  private:
    protozero::pbf_reader fields_;
    protozero::pbf_tag_type field_;
};

/// Where something stands: 0-based, half-open, and as unchecked as it came.
struct Range {
    std::int32_t start_line = 0;
    std::int32_t end_line = 0;
    std::int32_t end_column = 0;
};

/// A place in a document where a symbol stands.
struct Occurrence {
    std::string_view symbol;
    std::int32_t roles = 0;
    std::optional<Range> range;            ///< none when missing or malformed
    std::optional<Range> enclosing_range;  ///< of the whole declaration with its body, if it is a definition

    [[nodiscard]] bool is_definition() const { return (static_cast<std::uint32_t>(roles) & 1U) != 0; }

    static Occurrence read(protozero::pbf_reader fields);
};

/// What the indexer knows of a symbol. Any of it may be missing.
struct SymbolInformation {
    std::string_view symbol;
    SymbolKind kind = SymbolKind::UNSPECIFIED;
    std::string_view display_name;
    std::string_view signature;
    std::vector<std::string_view> documentation;

    static SymbolInformation read(protozero::pbf_reader fields);
};

/// One source file, or a part of what there is to say of it: two documents may have one path.
struct Document {
    std::size_t offset = 0;  ///< of its first byte in the file
    std::string_view message;
    std::string_view path;      ///< as it came: nothing says that it is a sane relative path
    std::string_view language;  ///< often empty

    [[nodiscard]] Repeated<Occurrence> occurrences() const;
    [[nodiscard]] Repeated<SymbolInformation> symbols() const;
};

/// Where an index comes from. Any of it may be empty.
struct Metadata {
    std::string_view tool_name;
    std::string_view tool_version;
    std::string_view project_root;  ///< the URI of the folder that paths are relative to
};

struct Index {
    Metadata metadata;
    std::vector<Document> documents;  ///< in the order of the file
};

/// Reads the metadata and finds the documents, without looking into their occurrences and symbols. Throws
/// `std::runtime_error` with one line that names the file, says what is wrong with it (not SCIP, truncated, damaged
/// and where) and what to do. What `after_each_document` throws ends the reading.
Index read_index(const MappedFile& file, const std::function<void()>& after_each_document);

/// The error to throw when a document of `file` turns out not to parse.
std::runtime_error damaged(const MappedFile& file, const Document& document);

}  // namespace embedded::scip
