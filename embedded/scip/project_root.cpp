#include "embedded/scip/project_root.h"

#include <charconv>
#include <filesystem>
#include <system_error>

namespace embedded::scip {

namespace {

// The text with every "%20" and the like as the byte that it stands for.
std::string decoded(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char byte = 0;
        const std::string_view digits = text[at] == '%' ? text.substr(at + 1, 2) : std::string_view();
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        const bool is_encoded = digits.size() == 2 && error == std::errc() && end == digits.data() + 2;
        result += is_encoded ? static_cast<char>(byte) : text[at];
        at += is_encoded ? 2 : 0;
    }
    return result;
}

}  // namespace

std::optional<std::string> folder_of_uri(std::string_view uri) {
    for (const std::string_view scheme : {"file://localhost/", "file:///"}) {
        if (uri.starts_with(scheme)) {
            const std::string path = decoded(uri.substr(scheme.size() - 1));
            std::error_code error;
            const bool is_folder = path.find('\0') == std::string::npos && std::filesystem::is_directory(path, error);
            return is_folder ? std::optional(path) : std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace embedded::scip
