#include "host/worktree/facts_store.h"

#include "host/worktree/bytes.h"
#include "host/worktree/syntax_bytes.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

namespace host::worktree {

namespace {

// Facts depend on the content of a file and on what the end of its name tells.
std::uint64_t key_of(std::int64_t content_hash, std::string_view path) {
    ByteWriter key;
    key.number(std::bit_cast<std::uint64_t>(content_hash));
    key.text(path.substr(path.rfind('.') + 1));
    return checksum(key.bytes());
}

// A record: its key, its bytes, and a hash of both.
std::string record_of(std::uint64_t key, std::string_view bytes) {
    ByteWriter record;
    record.number(key);
    record.text(bytes);
    record.number(checksum(bytes) ^ key);
    return record.bytes();
}

std::int32_t line(ByteReader& in) {
    return in.below<std::int32_t>(std::uint64_t{std::numeric_limits<std::int32_t>::max()} + 1);
}

// Reads what comes before the syntax.
SourceFacts begin_of_facts(ByteReader& in, std::string_view path) {
    SourceFacts facts = facts_of_name(path);
    if (in.flag()) {
        facts.language = facts.dialect = "cpp";
    }
    facts.summary = in.text();
    facts.line_count = line(in);
    facts.is_parsed = in.flag();
    facts.is_damaged = in.flag();
    return facts;
}

}  // namespace

std::string to_bytes(const SourceFacts& facts) {
    const std::vector<std::string_view> kinds = kinds_of_declarations();
    const auto& [language, dialect, summary, line_count, is_parsed, is_damaged, declarations, syntax] = facts;
    ByteWriter out;
    out.number(language == "cpp" ? 1 : 0);
    out.text(summary);
    out.number(static_cast<std::uint64_t>(line_count));
    out.number(is_parsed ? 1 : 0);
    out.number(is_damaged ? 1 : 0);
    write_syntax(out, syntax);
    out.number(declarations.size());
    for (const auto& [id, kind, lines, is_public, signature, documentation] : declarations) {
        out.number(id);
        out.number(static_cast<std::uint64_t>(std::ranges::find(kinds, kind) - kinds.begin()));
        out.number(static_cast<std::uint64_t>(lines.first));
        out.number(static_cast<std::uint64_t>(lines.last));
        out.number(is_public ? 1 : 0);
        out.text(signature);
        out.text(documentation);
    }
    return out.bytes();
}

SourceFacts facts_in(std::string_view bytes, std::string_view path) {
    const std::vector<std::string_view> kinds = kinds_of_declarations();
    ByteReader in(bytes);
    SourceFacts facts = begin_of_facts(in, path);
    facts.syntax = read_syntax(in);
    facts.declarations.resize(in.count());
    for (auto& [id, kind, lines, is_public, signature, documentation] : facts.declarations) {
        id = in.below(facts.syntax.declarations.size());
        kind = kinds[in.below(kinds.size())];
        lines.first = line(in);
        lines.last = line(in);
        is_public = in.flag();
        signature = in.text();
        documentation = in.text();
    }
    if (!in.is_at_end()) {
        throw Malformed();
    }
    return facts;
}

FactsStore::FactsStore(std::string path, const std::string& writer)
    : path_(std::move(path)), header_(record_of(0, "facts of " + writer)), bytes_(bytes_of_file(path_)) {
    if (!bytes_.starts_with(header_)) {
        bytes_.clear();
        is_writable_ = write(header_, std::ios::trunc);
        return;
    }
    bytes_.resize(read_records());  // in its place, so that the records stay where they are
    std::error_code error;
    std::filesystem::resize_file(path_, bytes_.size(), error);
    is_writable_ = !error;  // nothing may be added behind what is damaged
}

FactsStore::~FactsStore() {
    flush();
    drop_unused();
}

// Finds the records up to the first that is damaged, and returns where that begins.
std::size_t FactsStore::read_records() {
    std::size_t end = header_.size();
    ByteReader in(std::string_view(bytes_).substr(end));
    try {
        while (!in.is_at_end()) {
            const std::uint64_t key = in.number();
            const std::string_view bytes = in.text();
            if (in.number() != (checksum(bytes) ^ key)) {
                break;
            }
            records_.insert_or_assign(key, Record{bytes});
            end = bytes_.size() - in.rest();
        }
    } catch (const Malformed&) {  // cut off, as when the writer was killed
    }
    return end;
}

// The bytes of a record; empty when there is none.
std::string_view FactsStore::bytes_of(std::int64_t content_hash, std::string_view path) {
    const std::scoped_lock lock(mutex_);
    const auto found = records_.find(key_of(content_hash, path));
    if (found == records_.end()) {
        return {};
    }
    found->second.is_used = true;
    return found->second.bytes;
}

std::optional<SourceFacts> FactsStore::find(std::int64_t content_hash, std::string_view path) {
    try {
        ByteReader in(bytes_of(content_hash, path));
        static_cast<void>(in.text());  // the surface
        return facts_in(in.text(), path);
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

std::optional<SourceFacts> FactsStore::find_surface(std::int64_t content_hash, std::string_view path) {
    try {
        return facts_in(ByteReader(bytes_of(content_hash, path)).text(), path);
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

bool FactsStore::have_name(std::int64_t content_hash, std::string_view path,
                           const std::function<bool(std::string_view name)>& is_wanted) {
    try {
        ByteReader in(bytes_of(content_hash, path));
        static_cast<void>(in.text());  // the surface
        ByteReader facts(in.text());
        static_cast<void>(begin_of_facts(facts, path));
        return has_name(facts, is_wanted);
    } catch (const Malformed&) {
        return true;
    }
}

void FactsStore::add(std::int64_t content_hash, std::string_view path, const SourceFacts& facts) {
    constexpr std::size_t ENOUGH = 1'048'576;  // bytes to collect for one call of the system
    ByteWriter bytes;
    bytes.text(to_bytes(surface_of(facts)));
    bytes.text(to_bytes(facts));
    const std::string record = record_of(key_of(content_hash, path), bytes.bytes());
    const std::scoped_lock lock(mutex_);
    added_ += record;
    if (added_.size() >= ENOUGH) {
        flush();
    }
}

void FactsStore::flush() {
    is_writable_ = is_writable_ && (added_.empty() || write(added_, std::ios::app));
    added_.clear();
}

void FactsStore::drop_unused() {
    std::size_t used = 0;
    std::size_t unused = 0;
    for (const auto& [key, record] : records_) {
        (record.is_used ? used : unused) += record.bytes.size();
    }
    if (!is_writable_ || unused <= used) {
        return;
    }
    std::ifstream in(path_, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(bytes_.size()));
    const std::string added{std::istreambuf_iterator<char>(in), {}};
    std::string kept = header_;
    for (const auto& [key, record] : records_) {
        kept += record.is_used ? record_of(key, record.bytes) : "";
    }
    write(kept + added, std::ios::trunc);
}

bool FactsStore::write(std::string_view bytes, std::ios::openmode mode) const {
    std::ofstream out(path_, std::ios::binary | mode);
    out << bytes << std::flush;
    return out.good();
}

}  // namespace host::worktree
