// SCIP files in two lines:
//
//     scip_file({ScipDocument("a.ts").defines(F).describes(F, {.kind = 17}), ScipDocument("b.ts").refers(F)})
#pragma once

#include <protozero/pbf_writer.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace embedded::scip {

/// The symbol of a package that its descriptors lead to.
inline std::string symbol(std::string_view descriptors) {
    return "tool npm pkg 1.0 " + std::string(descriptors);
}

/// The symbol of something in a file of TypeScript or a module of Python, as their indexers write it.
inline std::string in(const std::string& module, const std::string& descriptors) {
    return symbol("`" + module + "`/" + descriptors);
}

inline const std::string F = symbol("f().");
inline const std::string G = symbol("g().");

using Numbers = std::vector<std::int32_t>;

inline void add_packed(protozero::pbf_writer& message, protozero::pbf_tag_type field, const Numbers& numbers) {
    message.add_packed_int32(field, numbers.begin(), numbers.end());
}

/// What a document says of a symbol; empty texts and kind 0 are left out.
struct Says {
    std::int32_t kind = 0;
    std::string display_name = {};
    std::string signature = {};
    std::vector<std::string> documentation = {};
};

class ScipDocument {
  public:
    explicit ScipDocument(std::string_view path, std::string_view language = {}) {
        message_.add_string(1, path.data(), path.size());
        if (!language.empty()) {
            message_.add_string(4, language.data(), language.size());
        }
    }

    ScipDocument& occurs(std::string_view symbol, std::int32_t roles, const Numbers& range,
                         const Numbers& enclosing = {}) {
        protozero::pbf_writer occurrence(message_, 2);
        add_packed(occurrence, 1, range);
        occurrence.add_string(2, symbol.data(), symbol.size());
        occurrence.add_int32(3, roles);
        add_packed(occurrence, 7, enclosing);
        return *this;
    }

    ScipDocument& defines(std::string_view symbol, const Numbers& range = {0, 0, 1}, const Numbers& enclosing = {}) {
        return occurs(symbol, 1, range, enclosing);
    }
    /// Adds a token of its own that names the symbol, far below all definitions.
    ScipDocument& refers(std::string_view symbol, std::int32_t roles = 0) { return refers_to_all({symbol}, roles); }
    /// Adds one token that names all of the symbols.
    ScipDocument& refers_to_all(const std::vector<std::string_view>& symbols, std::int32_t roles = 0) {
        ++tokens_;
        for (const std::string_view symbol : symbols) {
            occurs(symbol, roles, {1000 + tokens_, 0, 1});
        }
        return *this;
    }
    ScipDocument& announces(std::string_view symbol, const Numbers& range) { return occurs(symbol, 64, range); }

    ScipDocument& describes(std::string_view symbol, const Says& says = {}) {
        protozero::pbf_writer information(message_, 3);
        information.add_string(1, symbol.data(), symbol.size());
        for (const std::string& text : says.documentation) {
            information.add_string(3, text);
        }
        if (says.kind != 0) {
            information.add_enum(5, says.kind);
        }
        if (!says.display_name.empty()) {
            information.add_string(6, says.display_name);
        }
        if (!says.signature.empty()) {
            protozero::pbf_writer(information, 7).add_string(5, says.signature);
        }
        return *this;
    }

    /// Adds an occurrence as it stands, well-formed or not.
    ScipDocument& adds_occurrence(const std::string& bytes) {
        message_.add_message(2, bytes);
        return *this;
    }

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

    ScipDocument(const ScipDocument& other) : bytes_(other.bytes_) {}
    ScipDocument& operator=(const ScipDocument&) = delete;
    ~ScipDocument() = default;

  private:
    std::string bytes_;
    protozero::pbf_writer message_{bytes_};
    std::int32_t tokens_ = 0;
};

inline std::string scip_file(const std::vector<ScipDocument>& documents, const std::string& project_root = {}) {
    std::string bytes;
    protozero::pbf_writer index(bytes);
    {
        protozero::pbf_writer metadata(index, 1);
        protozero::pbf_writer tool(metadata, 2);
        tool.add_string(1, "indexer");
        tool.add_string(2, "1.2");
        tool.commit();
        if (!project_root.empty()) {
            metadata.add_string(3, project_root);
        }
    }
    for (const ScipDocument& document : documents) {
        index.add_message(2, document.bytes());
    }
    return bytes;
}

}  // namespace embedded::scip
