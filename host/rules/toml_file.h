// Reads the values of a TOML file, and refuses wrong ones by their line.
#pragma once

#include "host/text/toml.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class TomlFile {
  public:
    /// Parses `text`; `name` is that of the file in messages. Throws `fault` for text that is no TOML.
    TomlFile(std::string name, std::string_view text);

    [[nodiscard]] const toml::table& root() const { return root_; }

    /// Returns one line: the file, the line in it, and what is wrong.
    [[nodiscard]] std::runtime_error fault(const toml::source_region& where, const std::string& what) const;

    /// Throws `fault` for the first key of a table that is none of `keys`.
    void refuse_unknown_keys(const toml::table& table, std::span<const std::string_view> keys) const;

    /// Returns the strings under a key; none when it is absent. Throws `fault` for anything but a list of strings.
    [[nodiscard]] std::vector<std::string> strings(const toml::table& table, std::string_view key) const;

    /// The same for patterns. Throws `fault` for one that is no `Glob`, too.
    [[nodiscard]] std::vector<std::string> patterns(const toml::table& table, std::string_view key) const;

  private:
    std::string name_;
    toml::table root_;
};

}  // namespace host
