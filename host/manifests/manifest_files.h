// The files of a checkout, as the readers of manifests ask for them.
#pragma once

#include "host/files/checkout.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::manifests {

/// "a/b/c.toml" -> "a/b"; "" for a file in the root.
std::string_view folder_of(std::string_view path);

/// Returns `path` as seen from `folder`, free of "." and "..", without a "/" at its end; "" for the root. None when it
/// is absolute or leads out of the checkout.
std::optional<std::string> joined(std::string_view folder, std::string_view path);

class ManifestFiles {
  public:
    /// Both must outlive the object.
    ManifestFiles(const Checkout& checkout, std::span<const std::string> paths);

    [[nodiscard]] bool has(std::string_view path) const;

    /// Returns whether the path of some file begins so.
    [[nodiscard]] bool has_prefix(std::string_view prefix) const;

    /// Returns none for a path that is not of the checkout's, and for a file that is larger than any manifest or that
    /// cannot be read.
    [[nodiscard]] std::optional<std::string> text(std::string_view path) const;

    /// Returns the value in a JSON file, which may have comments and commas before closing brackets; null when there is
    /// none.
    [[nodiscard]] nlohmann::json json(std::string_view path) const;

    /// The paths of all files, in order.
    [[nodiscard]] std::span<const std::string_view> paths() const { return paths_; }

  private:
    const Checkout& checkout_;
    std::vector<std::string_view> paths_;
};

/// Returns the value under a key; null where `value` is no object or has no such key.
const nlohmann::json& value_at(const nlohmann::json& value, std::string_view key);

/// Returns the text under a key; "" where there is none.
std::string text_at(const nlohmann::json& value, std::string_view key);

}  // namespace host::manifests
