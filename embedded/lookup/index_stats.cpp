#include "embedded/lookup/index_stats.h"

#include "embedded/scip/report_json.h"
#include "embedded/sqlite/index.h"

#include <array>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <stdexcept>

namespace embedded {

namespace {

std::string in_utc(std::filesystem::file_time_type time) {
    const auto system = std::chrono::file_clock::to_sys(time);
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::time_point_cast<std::chrono::seconds>(system));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), size};
}

}  // namespace

IndexStats index_stats(const Connection& index) {
    const std::string& path = index.path();
    try {
        return {.index = path,
                .bytes = static_cast<std::int64_t>(std::filesystem::file_size(path)),
                .made = in_utc(std::filesystem::last_write_time(path)),
                .report = scip::read_report(noted(index, "report"))};
    } catch (const std::filesystem::filesystem_error& error) {
        throw std::runtime_error(path + ": cannot be read (" + error.code().message() +
                                 "); import the SCIP file again");
    } catch (const std::invalid_argument&) {
        throw std::runtime_error(path + ": does not say how it was made; import the SCIP file again");
    }
}

}  // namespace embedded
