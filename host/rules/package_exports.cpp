#include "host/rules/package_exports.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <filesystem>
#include <optional>

namespace host {

std::vector<std::string> package_exports(const Checkout& checkout, std::string_view folder) {
    constexpr std::size_t LARGEST = 1'048'576;  // bytes
    const std::filesystem::path package(folder);
    const std::optional<FileContent> file = checkout.read((package / "package.json").generic_string(), LARGEST);
    const nlohmann::json manifest =
        file && file->text ? nlohmann::json::parse(*file->text, nullptr, false) : nlohmann::json();
    std::vector<const nlohmann::json*> values;
    for (const char* const key : {"exports", "main", "module", "types", "typings"}) {
        if (manifest.is_object() && manifest.contains(key)) {
            values.push_back(&manifest.at(key));
        }
    }
    std::vector<std::string> paths;
    while (!values.empty()) {  // conditions may be nested to any depth
        const nlohmann::json& value = *values.back();
        values.pop_back();
        if (value.is_string()) {
            paths.push_back((package / value.get<std::string>()).lexically_normal().generic_string());
        }
        if (value.is_structured()) {
            for (const nlohmann::json& each : value) {
                values.push_back(&each);
            }
        }
    }
    return paths;
}

}  // namespace host
