#include "host/git/tracked_files.h"

#include "host/files/checkout.h"
#include "host/git/repository_folder.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace host::git {

namespace {

namespace fs = std::filesystem;
using std::string_view;

// Reads numbers and texts from bytes; what is behind their end reads as nothing, and `is_whole` becomes false.
class IndexBytes {
  public:
    explicit IndexBytes(string_view bytes) : bytes_(bytes) {}

    string_view take(std::size_t size) {
        is_whole_ = is_whole_ && size <= bytes_.size() - at_;
        if (!is_whole_) {
            return {};
        }
        at_ += size;
        return bytes_.substr(at_ - size, size);
    }

    std::uint32_t number(std::size_t size) {
        std::uint32_t number = 0;
        for (const char byte : take(size)) {
            number = (number << 8U) | static_cast<unsigned char>(byte);
        }
        return number;
    }

    // A number of seven bits a byte, the highest first; each byte but the last has its eighth bit set.
    std::size_t packed_number() {
        std::uint32_t byte = number(1);
        std::size_t number = byte & 0x7FU;
        while (is_whole_ && (byte & 0x80U) != 0) {
            byte = this->number(1);
            number = ((number + 1) << 7U) | (byte & 0x7FU);
        }
        return number;
    }

    // Up to a zero byte, which is passed.
    string_view text() {
        const std::size_t end = is_whole_ ? bytes_.find('\0', at_) : string_view::npos;
        is_whole_ = end != string_view::npos;
        const string_view text = is_whole_ ? take(end - at_) : string_view();
        take(1);
        return text;
    }

    [[nodiscard]] std::size_t at() const { return at_; }
    [[nodiscard]] std::size_t rest() const { return bytes_.size() - at_; }
    [[nodiscard]] bool is_whole() const { return is_whole_; }

  private:
    string_view bytes_;
    std::size_t at_ = 0;
    bool is_whole_ = true;
};

// Reads one entry; `path` is that of the entry before.
void read_entry(IndexBytes& bytes, std::uint32_t version, std::size_t hash_size, std::string& path) {
    constexpr std::size_t STATUS = 40;  // bytes of what the system says of the file
    constexpr std::uint32_t HAS_MORE_FLAGS = 0x4000;
    constexpr std::size_t ALIGNMENT = 8;
    const std::size_t begin = bytes.at();
    bytes.take(STATUS + hash_size);
    if ((bytes.number(2) & HAS_MORE_FLAGS) != 0) {
        bytes.take(2);
    }
    if (version == 4) {
        path.resize(path.size() - std::min(bytes.packed_number(), path.size()));
        path += bytes.text();
        return;
    }
    path = bytes.text();
    bytes.take((ALIGNMENT - (bytes.at() - begin) % ALIGNMENT) % ALIGNMENT);
}

constexpr std::size_t LONGEST_PATH = 4'096;  // bytes; the system opens none that is longer

std::optional<std::vector<std::string>> paths_in(string_view all, std::size_t hash_size) {
    IndexBytes bytes(all);
    const bool is_index = bytes.take(4) == "DIRC";
    const std::uint32_t version = bytes.number(4);
    const std::uint32_t count = bytes.number(4);
    if (!is_index || version < 2 || version > 4) {
        return std::nullopt;
    }
    std::vector<std::string> paths;
    std::string path;
    for (std::uint32_t at = 0; at < count && bytes.is_whole(); ++at) {
        read_entry(bytes, version, hash_size, path);
        if (path.size() > LONGEST_PATH) {  // version 4 could repeat it in each entry without its bytes
            return std::nullopt;
        }
        paths.push_back(path);
    }
    while (bytes.is_whole() && bytes.rest() > hash_size) {  // extensions
        const bool is_split = bytes.take(4) == "link";
        bytes.take(bytes.number(4));
        if (is_split) {
            return std::nullopt;
        }
    }
    if (!bytes.is_whole() || bytes.rest() != hash_size) {
        return std::nullopt;
    }
    std::ranges::sort(paths);
    return paths;
}

}  // namespace

std::optional<std::vector<std::string>> read_git_index(string_view bytes) {
    constexpr std::size_t SHA1 = 20;
    constexpr std::size_t SHA256 = 32;
    std::optional<std::vector<std::string>> paths = paths_in(bytes, SHA1);
    return paths ? std::move(paths) : paths_in(bytes, SHA256);
}

std::string git_index_of(std::vector<std::string> paths) {
    constexpr std::size_t STATUS = 40;
    constexpr std::size_t SHA1 = 20;
    constexpr std::size_t ALIGNMENT = 8;
    constexpr std::size_t LONGEST_NOTED = 0xFFF;  // a longer name ends where its entry does
    const auto number = [](std::size_t value, unsigned size) {
        std::string bytes;
        for (unsigned at = size; at > 0; --at) {
            bytes.push_back(static_cast<char>(value >> (8 * (at - 1)) & 0xFFU));
        }
        return bytes;
    };
    std::ranges::sort(paths);
    std::string bytes = "DIRC" + number(2, 4) + number(paths.size(), 4);
    for (const std::string& path : paths) {
        const std::string entry =
            std::string(STATUS + SHA1, '\0') + number(std::min(path.size(), LONGEST_NOTED), 2) + path + '\0';
        bytes += entry + std::string((ALIGNMENT - entry.size() % ALIGNMENT) % ALIGNMENT, '\0');
    }
    return bytes + std::string(SHA1, '\0');
}

TrackedFiles::TrackedFiles(const fs::path& root) {
    constexpr std::size_t LARGEST = 268'435'456;  // bytes; a hundred for each file
    try {
        const std::string repository = repository_folder(root);
        const std::optional<FileContent> index =
            repository.empty() ? std::nullopt : Checkout(repository).read("index", LARGEST);
        if (index && index->text) {
            paths_ = read_git_index(*index->text).value_or(std::vector<std::string>());
        }
    } catch (const std::runtime_error&) {  // no folder, or one that cannot be entered
    }
}

bool TrackedFiles::hold(string_view path) const {
    return std::ranges::binary_search(paths_, path);
}

bool TrackedFiles::hold_some_below(string_view folder) const {
    const std::string begin = std::string(folder) + "/";
    const auto first = std::ranges::lower_bound(paths_, begin);
    return first != paths_.end() && first->starts_with(begin);
}

}  // namespace host::git
