#include "host/worktree/remembered_files.h"

#include "host/worktree/bytes.h"

#include <bit>
#include <cstdio>
#include <fstream>
#include <string_view>

namespace host::worktree {

namespace {

std::uint64_t bits(std::int64_t number) {
    return std::bit_cast<std::uint64_t>(number);
}

std::int64_t signed_number(ByteReader& in) {
    return std::bit_cast<std::int64_t>(in.number());
}

RememberedFiles remembered_in(std::string_view bytes) {
    ByteReader whole(bytes);
    const std::string_view content = whole.text();
    if (whole.number() != checksum(content)) {
        throw Malformed();
    }
    ByteReader in(content);
    RememberedFiles remembered;
    remembered.origin = in.text();
    remembered.files.resize(in.count());
    for (auto& [path, stamp, content_hash, unresolved] : remembered.files) {
        path = in.text();
        stamp = {.size = signed_number(in),
                 .modified = signed_number(in),
                 .changed = signed_number(in),
                 .number = in.number()};
        content_hash = signed_number(in);
        unresolved = signed_number(in);
    }
    return remembered;
}

}  // namespace

RememberedFiles read_remembered(const std::string& path) {
    const std::string bytes = bytes_of_file(path);
    try {
        return remembered_in(bytes);
    } catch (const Malformed&) {
        return {};
    }
}

void write_remembered(const std::string& path, const RememberedFiles& remembered) {
    ByteWriter content;
    content.text(remembered.origin);
    content.number(remembered.files.size());
    for (const auto& [file, stamp, content_hash, unresolved] : remembered.files) {
        content.text(file);
        for (const std::int64_t number : {stamp.size, stamp.modified, stamp.changed}) {
            content.number(bits(number));
        }
        content.number(stamp.number);
        content.number(bits(content_hash));
        content.number(bits(unresolved));
    }
    ByteWriter whole;
    whole.text(content.bytes());
    whole.number(checksum(content.bytes()));
    const std::string partial = path + ".partial";
    bool is_written = false;
    {
        std::ofstream file(partial, std::ios::binary | std::ios::trunc);
        file << whole.bytes() << std::flush;
        is_written = file.good();
    }
    if (!is_written || std::rename(partial.c_str(), path.c_str()) != 0) {
        std::remove(partial.c_str());
    }
}

}  // namespace host::worktree
