// Links to sources on a site that shows them, such as a forge.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The address of a source as a text with placeholders:
/// "https://forge/owner/repo/blob/{commit}/{path}#L{first}-L{last}"
class SourceUrl {
  public:
    /// Throws `std::runtime_error` with one line when the text is no address of the web, has other placeholders, or
    /// lacks "{path}".
    explicit SourceUrl(std::string_view text);

    [[nodiscard]] bool has_commit() const;

    /// Returns the address of the lines of a file, 1-based and inclusive. It holds no character that would end a link
    /// of Markdown.
    [[nodiscard]] std::string of(std::string_view commit, std::string_view path, std::int64_t first,
                                 std::int64_t last) const;

  private:
    enum class Placeholder : std::uint8_t { NONE, COMMIT, PATH, FIRST, LAST };
    struct Part {
        std::string text;  // in front of the placeholder
        Placeholder placeholder = Placeholder::NONE;
    };

    static Placeholder placeholder_named(std::string_view name);
    [[nodiscard]] bool has(Placeholder placeholder) const;

    std::vector<Part> parts_;
};

/// Where the citations of a page lead.
struct SourceLinks {
    SourceUrl url;
    std::string commit = {};  ///< which one the sources are of; empty where the address has none
};

}  // namespace host
