// The messages of SCIP, read where they lie in memory.
//
// A SCIP file is one protobuf message: metadata, then a document for every source file of a repository. A document
// holds the occurrences of symbols in its file, and what its indexer knows of the symbols that the file defines.
// What is read of them are views of their bytes, unless it says otherwise. Unknown fields are passed over, and so are
// known ones of an unexpected wire type. Every function throws `protozero::exception` where the bytes do not parse.
#pragma once

#include "host/scip/fields.h"
#include "host/scip/kind.h"

#include <protozero/pbf_reader.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host::scip {

/// The elements of a repeated field of a message, read one at a time:
///
///     Repeated<Occurrence> occurrences = document.occurrences();
///     while (const std::optional<Occurrence> occurrence = occurrences.next()) { use(*occurrence); }
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
        const protozero::data_view element = fields_.get_view();
        return Element::read({element.data(), element.size()});
    }

  private:
    protozero::pbf_reader fields_;
    protozero::pbf_tag_type field_;
};

/// Where something stands: 0-based, half-open, and as unchecked as it came.
struct Range {
    std::int32_t start_line = 0;
    std::int32_t start_column = 0;
    std::int32_t end_line = 0;
    std::int32_t end_column = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Range&, const Range&) = default;
};

/// A place in a document where a symbol stands. A range is none when it is missing or malformed.
struct Occurrence {
    std::string_view symbol;
    std::int32_t roles = 0;
    std::optional<Range> range;
    std::optional<Range> enclosing_range;  ///< of the whole declaration with its body, if this is a definition

    [[nodiscard]] bool has(field::Role role) const { return (static_cast<std::uint32_t>(roles) & role) != 0; }
    [[nodiscard]] bool is_definition() const { return has(field::ROLE_DEFINITION); }
    [[nodiscard]] bool is_generated() const { return has(field::ROLE_GENERATED); }
    /// Whether it only announces what is defined elsewhere, as a declaration in a header does.
    [[nodiscard]] bool is_forward_definition() const { return !is_definition() && has(field::ROLE_FORWARD_DEFINITION); }

    static Occurrence read(std::string_view message);
};

/// An element of a repeated field of texts.
struct TextElement {
    std::string_view text;

    static TextElement read(std::string_view message) { return {message}; }
};

/// What the indexer knows of a symbol. Any of it may be missing.
struct SymbolInformation {
    std::string_view symbol;
    SymbolKind kind = SymbolKind::UNSPECIFIED;
    std::string_view display_name;
    std::string_view signature;
    std::string_view message;

    [[nodiscard]] Repeated<TextElement> documentation() const;

    static SymbolInformation read(std::string_view message);
};

/// What a document is about.
struct Heading {
    std::string_view path;      ///< as it came: nothing says that it is a sane relative path
    std::string_view language;  ///< often empty
};

/// What there is to say of one source file, or a part of that: two documents may have one path.
struct Document {
    std::string_view message;

    [[nodiscard]] Heading heading() const;
    [[nodiscard]] Repeated<Occurrence> occurrences() const;
    [[nodiscard]] Repeated<SymbolInformation> symbols() const;
};

/// Where an index comes from. Any of it may be empty.
struct Metadata {
    std::string tool_name;
    std::string tool_version;
    std::string project_root;  ///< the URI of the folder that paths are relative to

    static Metadata read(std::string_view message);
};

}  // namespace host::scip
