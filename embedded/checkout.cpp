#include "embedded/checkout.h"

#include "embedded/content_hash.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <istream>
#include <stdexcept>
#include <system_error>

namespace embedded {

namespace fs = std::filesystem;

namespace {

bool is_plain(std::string_view path) {
    return !path.empty() && path.find('\0') == std::string_view::npos;
}

bool stays_below(const fs::path& path) {
    return path.is_relative() && std::ranges::find(path, fs::path("..")) == path.end();
}

// Compares whole segments, so that `/a/b` does not contain `/a/bc`.
bool contains(const fs::path& folder, const fs::path& path) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

void skip_byte_order_mark(std::istream& file) {
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    std::array<char, MARK.size()> head{};
    if (!file.read(head.data(), head.size()) || std::string_view(head.data(), head.size()) != MARK) {
        file.clear();
        file.seekg(0);
    }
}

std::vector<std::string> lines_of(std::istream& file) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        const bool has_end = !file.eof();
        if (has_end && line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

std::string fault(const std::error_code& error) {
    if (error == std::errc::no_such_file_or_directory) {
        return "no such folder";
    }
    return error == std::errc::not_a_directory ? "not a folder" : "cannot be read (" + error.message() + ")";
}

// The folder without symbolic links; throws when it cannot be entered.
fs::path folder_at(const std::string& root) {
    std::error_code error;
    fs::path folder = fs::canonical(root, error);
    if (!error && access((folder / ".").c_str(), X_OK) != 0) {
        error.assign(errno, std::generic_category());
    }
    if (error) {
        throw std::runtime_error(root + ": " + fault(error) +
                                 "; name the folder that holds the checked-out repository");
    }
    return folder;
}

}  // namespace

Checkout::Checkout(const std::string& root) : root_(folder_at(root)) {}

std::optional<fs::path> Checkout::find(std::string_view path) const {
    if (!is_plain(path) || !stays_below(path)) {
        return std::nullopt;
    }
    std::error_code error;
    fs::path file = fs::canonical(root_ / path, error);
    // Only a regular file is opened at all: opening a pipe waits for its writer.
    if (error || !contains(root_, file) || !fs::is_regular_file(file, error)) {
        return std::nullopt;
    }
    return file;
}

std::optional<std::vector<std::string>> Checkout::read_lines(std::string_view path) const {
    const std::optional<fs::path> found = find(path);
    if (!found) {
        return std::nullopt;
    }
    std::ifstream file(*found, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    skip_byte_order_mark(file);
    std::vector<std::string> lines = lines_of(file);
    if (file.bad()) {
        return std::nullopt;
    }
    return lines;
}

std::optional<FileContent> Checkout::read(std::string_view path, std::size_t most) const {
    const std::optional<fs::path> found = find(path);
    if (!found) {
        return std::nullopt;
    }
    std::ifstream file(*found, std::ios::binary);
    constexpr std::size_t PIECE = 65'536;
    std::string piece(PIECE, '\0');
    ContentHash hash;
    std::string text;
    bool fits = true;
    while (file.read(piece.data(), PIECE) || file.gcount() > 0) {
        const std::string_view bytes(piece.data(), static_cast<std::size_t>(file.gcount()));
        hash.add(bytes);
        fits = fits && bytes.size() <= most - text.size();
        if (fits) {
            text += bytes;
        }
    }
    if (!file.eof() || file.bad()) {
        return std::nullopt;
    }
    return FileContent{hash.value(), fits ? std::optional(std::move(text)) : std::nullopt};
}

}  // namespace embedded
