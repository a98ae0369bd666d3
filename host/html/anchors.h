// The anchors of a page: what "#..." of its address leads to.
#pragma once

#include "storage/grounding_queries.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host::html {

/// Returns the anchor of a file, whatever else stands on the page: "file:src/a.ts", with what a URI cannot hold
/// percent-encoded.
std::string file_anchor(std::string_view path);

/// The anchors of declarations. They tell declarations by file and qualified name, not by line, so that
/// an anchor leads to the same declaration when others come and go. Only of several with one qualified name in a file,
/// the second and further ones bear their number.
class DeclarationAnchors {
  public:
    /// `declarations` holds all of each file that has one there.
    explicit DeclarationAnchors(std::span<const storage::ScopeSymbol> declarations);

    /// The anchor of one of these: "src/a.ts:One.run", "src/a.ts:One.run:2".
    [[nodiscard]] const std::string& of(const storage::ScopeSymbol& declaration) const;

  private:
    std::unordered_map<storage::SymbolId, std::string> anchors_;
};

}  // namespace host::html
