#include "host/git/references.h"

#include "host/files/checkout.h"
#include "host/git/repository_folder.h"
#include "host/git/revision_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>
#include <string_view>

namespace host::git {

namespace {

// The text of a file of a repository, which leads nowhere else.
std::optional<std::string> text_of(const std::string& folder, const std::string& path) {
    constexpr std::size_t LARGEST = 67'108'864;  // bytes; of packed references a million
    const std::optional<FileContent> file = Checkout(folder).read(path, LARGEST);
    return file ? file->text : std::nullopt;
}

std::string without_line_end(std::string text) {
    text.erase(std::min(text.find_last_not_of(" \r\n") + 1, text.size()));
    return text;
}

// The value of a reference among those that are packed into one file.
std::optional<std::string> packed(const std::string& folder, std::string_view reference) {
    std::istringstream lines(text_of(folder, "packed-refs").value_or(""));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos && line.substr(blank + 1) == reference) {
            return line.substr(0, blank);
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> hash_of(const std::string& own_folder, const std::string& shared_folder,
                                   std::string reference) {
    constexpr int LONGEST_CHAIN = 5;  // as Git has it
    constexpr std::string_view SYMBOLIC = "ref: ";
    for (int length = 0; length <= LONGEST_CHAIN && revision_name(reference); ++length) {
        std::optional<std::string> value = text_of(own_folder, reference);
        value = value ? value : text_of(shared_folder, reference);
        value = value ? value : packed(shared_folder, reference);
        if (!value || !value->starts_with(SYMBOLIC)) {
            return value ? std::optional(without_line_end(*value)) : std::nullopt;
        }
        reference = without_line_end(value->substr(SYMBOLIC.size()));
    }
    return std::nullopt;
}

std::optional<std::string> checked_out_commit(const std::filesystem::path& root) {
    constexpr std::array<std::size_t, 2> LENGTHS{40, 64};  // in hexadecimal digits
    const std::string folder = repository_folder(root);
    const std::optional<std::string> hash =
        folder.empty() ? std::nullopt : hash_of(folder, shared_folder(folder), "HEAD");
    const bool is_hash = hash && std::ranges::find(LENGTHS, hash->size()) != LENGTHS.end() &&
                         hash->find_first_not_of("0123456789abcdef") == std::string::npos;
    return is_hash ? hash : std::nullopt;
}

}  // namespace host::git
