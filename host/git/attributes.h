// The attributes that .gitattributes files give to files, as far as they say what people did not write.
#pragma once

#include "host/git/pattern.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::git {

/// What is said of a file; none where nothing is.
struct Origin {
    std::optional<bool> is_generated;  ///< linguist-generated
    std::optional<bool> is_vendored;   ///< linguist-vendored
};

/// One word of a line: "made", "-made", "!made", "made=false".
struct AttributeState {
    std::string attribute;
    std::optional<bool> value;  ///< none where the word takes back what is said elsewhere
};

/// Groups of attributes that have a name: "[attr]made linguist-generated -diff". Only the file in the root of a
/// checkout can define them.
using AttributeMacros = std::map<std::string, std::vector<AttributeState>, std::less<>>;

/// Returns the groups that the text of the file in the root defines.
AttributeMacros attribute_macros(std::string_view text);

/// The attributes of one file, from the rules nearest to it to those of the root.
class FileAttributes {
  public:
    /// `macros` must outlive the object.
    explicit FileAttributes(const AttributeMacros& macros) : macros_(macros) {}

    /// Adds the words of a line. What has been said of an attribute stays, and of the words the last counts.
    void complete(const std::vector<AttributeState>& states);

    [[nodiscard]] Origin origin() const;

  private:
    const AttributeMacros& macros_;
    std::map<std::string, std::optional<bool>, std::less<>> values_;
};

/// The rules of one .gitattributes file.
class AttributeRules {
  public:
    /// Keeps the rules about attributes that say where a file comes from, and about macros.
    AttributeRules(std::string_view text, const AttributeMacros& macros);

    /// Completes what is said of the file at `path`, relative to the folder of the rules.
    void complete(std::string_view path, FileAttributes& attributes) const;

  private:
    struct Rule {
        Pattern pattern;
        std::vector<AttributeState> states;
    };
    std::vector<Rule> rules_;  // of several that match, the last that says something counts
};

}  // namespace host::git
