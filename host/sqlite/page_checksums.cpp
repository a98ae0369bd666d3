#include "host/sqlite/page_checksums.h"

#include <sqlite3.h>
#include <xxhash.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <istream>
#include <system_error>
#include <utility>
#include <vector>

namespace host {

namespace {

constexpr std::size_t CHECKSUM_BYTES = 8;

constexpr std::uint32_t CHECKSUMS_APPLICATION_ID = 0x57534331;  // "WSC1"

using Checksum = std::array<unsigned char, CHECKSUM_BYTES>;

Checksum checksum_of(std::span<const unsigned char> page, std::size_t number) {
    const std::span<const unsigned char> content = page.first(page.size() - CHECKSUM_BYTES);
    XXH64_canonical_t canonical{};
    XXH64_canonicalFromHash(&canonical, XXH3_64bits_withSeed(content.data(), content.size(), number));
    return std::to_array(canonical.digest);
}

std::uint32_t big_endian(std::span<const unsigned char> bytes) {
    std::uint32_t value = 0;
    for (const unsigned char byte : bytes) {
        value = value << 8U | byte;
    }
    return value;
}

// Streams count in characters.
char* characters(std::span<unsigned char> bytes) {
    return reinterpret_cast<char*>(bytes.data());  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

SqliteError damaged(const std::string& path) {
    return {path, "damaged, or changed by another program", SQLITE_CORRUPT};
}

// Calls `use` for each page of a file with checksums, and `end` for each block of them with its place. Throws when the
// file is none, and stops when it cannot be read.
template <class Use, class End>
void for_each_page(std::istream& file, const std::string& path, const Use& use, const End& end) {
    std::array<unsigned char, DATABASE_HEADER_BYTES> header{};
    file.read(characters(header), header.size());
    const std::optional<PageLayout> layout = layout_with_checksums(header);
    std::error_code error;
    if (!file || !layout || !is_possible(*layout, std::filesystem::file_size(path, error))) {
        throw damaged(path);
    }
    constexpr std::size_t PAGES_AT_ONCE = 256;
    const std::size_t page_size = layout->page_size;
    std::vector<unsigned char> block(PAGES_AT_ONCE * page_size);
    for (std::size_t number = 1; number <= layout->pages && file;) {
        const std::size_t pages = std::min(PAGES_AT_ONCE, layout->pages - (number - 1));
        const std::span<unsigned char> read = std::span(block).first(pages * page_size);
        const auto place = static_cast<std::streamoff>((number - 1) * page_size);
        file.seekg(place);
        file.read(characters(read), std::ssize(read));
        for (std::span<unsigned char> rest = read; !rest.empty(); rest = rest.subspan(page_size)) {
            use(rest.first(page_size), number++);
        }
        end(read, place);
    }
}

}  // namespace

void leave_room_for_checksums(const SqliteConnection& connection) {
    int bytes = CHECKSUM_BYTES;
    sqlite3_file_control(connection.handle(), "main", SQLITE_FCNTL_RESERVE_BYTES, &bytes);
    connection.execute("PRAGMA application_id = " + std::to_string(CHECKSUMS_APPLICATION_ID));
}

std::optional<PageLayout> layout_with_checksums(std::span<const unsigned char, DATABASE_HEADER_BYTES> header) {
    if (big_endian(header.subspan(68, 4)) != CHECKSUMS_APPLICATION_ID) {
        return std::nullopt;
    }
    const std::size_t page_size = big_endian(header.subspan(16, 2));
    return PageLayout{.page_size = page_size == 1 ? 65'536 : page_size, .pages = big_endian(header.subspan(28, 4))};
}

bool is_possible(const PageLayout& layout, std::size_t file_size) {
    constexpr std::size_t SMALLEST_PAGE = 512;
    return layout.page_size >= SMALLEST_PAGE && std::has_single_bit(layout.page_size) &&
           layout.page_size * layout.pages == file_size;
}

bool has_its_checksum(std::span<const unsigned char> page, std::size_t number) {
    return std::ranges::equal(page.last(CHECKSUM_BYTES), checksum_of(page, number));
}

bool copy_with_checksums(const std::string& from, const std::string& to) {
    std::ifstream in(from, std::ios::binary);
    std::ofstream out(to, std::ios::binary | std::ios::trunc);
    for_each_page(
        in, from,
        [&](std::span<unsigned char> page, std::size_t number) {
            if (!has_its_checksum(page, number)) {
                throw damaged(from);
            }
        },
        [&](std::span<unsigned char> pages, std::streamoff /*place*/) {
            out.write(characters(pages), std::ssize(pages));
        });
    return in && out.flush();
}

bool write_checksums(const std::string& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    bool has_changed = false;  // something in the block, which of a revised index is seldom so
    for_each_page(
        file, path,
        [&](std::span<unsigned char> page, std::size_t number) {
            if (!has_its_checksum(page, number)) {
                std::ranges::copy(checksum_of(page, number), page.last(CHECKSUM_BYTES).begin());
                has_changed = true;
            }
        },
        [&](std::span<unsigned char> pages, std::streamoff place) {
            if (std::exchange(has_changed, false)) {
                file.seekp(place);
                file.write(characters(pages), std::ssize(pages));
            }
        });
    return static_cast<bool>(file.flush());
}

}  // namespace host
