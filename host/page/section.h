// The sections of a page.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace host {

enum class Section : std::uint8_t { FILES, CONSUMERS, DECLARATIONS, IN_DEPTH, DEPENDENCIES, GRAPH, SEEDS, OUTLINE };

/// All sections, in the order in which they are printed.
inline constexpr std::array SECTIONS{Section::FILES,    Section::CONSUMERS,    Section::DECLARATIONS,
                                     Section::IN_DEPTH, Section::DEPENDENCIES, Section::GRAPH,
                                     Section::SEEDS,    Section::OUTLINE};

/// The section that a user calls `name`; none when there is no such section.
std::optional<Section> section_named(std::string_view name);

/// What a user calls a section.
std::string_view name_of(Section section);

/// The names of all sections, in their order, joined by ", ".
std::string section_names();

/// Some sections; none stands for all but the outline, which is for those who ask for it.
class SectionChoice {
  public:
    void add(Section section) { sections_.insert(section); }
    [[nodiscard]] bool is_empty() const { return sections_.empty(); }
    [[nodiscard]] bool contains(Section section) const {
        return sections_.empty() ? section != Section::OUTLINE : sections_.contains(section);
    }

  private:
    std::set<Section> sections_;
};

}  // namespace host
