// Time as text.
#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <string>

namespace host {

/// Returns a time in UTC: "2026-11-24T10:53:02Z".
inline std::string in_utc(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), size};
}

}  // namespace host
