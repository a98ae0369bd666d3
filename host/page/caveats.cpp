#include "host/page/caveats.h"

#include "host/index/notes.h"
#include "host/text/counted.h"
#include "host/text/split_lines.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// Whether the index holds no other files than these, which it holds.
bool are_all(storage::Database& db, std::span<const std::string> paths) {
    return !paths.empty() && db.count_files(std::ssize(paths) + 1) == std::ssize(paths);
}

// Adds a remark on each of the first files, and one on how many more there are.
void add_remarks_on_files(std::span<const models::Text> paths, const std::string& remark, const std::string& on_more,
                          std::vector<std::string>& remarks) {
    constexpr std::size_t NAMED = 5;
    for (const models::Text& path : paths.first(std::min(paths.size(), NAMED))) {
        remarks.push_back(std::string(path) + remark);
    }
    if (paths.size() > NAMED) {
        remarks.push_back("... and " + counted(static_cast<std::int64_t>(paths.size() - NAMED), "more file") + on_more);
    }
}

// The paths that the index notes as those of files with damage.
std::set<std::string, std::less<>> noted_damage(storage::Database& db) {
    const std::string note = db.noted(notes::DAMAGED);
    std::set<std::string, std::less<>> paths;
    for (const std::string_view path : split_lines(note)) {
        paths.emplace(path);
    }
    return paths;
}

}  // namespace

std::vector<std::string> remarks_on(const Caveats& caveats, const std::string& checkout) {
    std::vector<std::string> remarks;
    add_remarks_on_files(caveats.changed, ": changed since it was indexed; its lines may be off; index again",
                         " changed since indexed; index again", remarks);
    add_remarks_on_files(caveats.withheld,
                         ": not known to be as it was indexed, so it is left out; allow it with --checkout " + checkout,
                         " left out", remarks);
    add_remarks_on_files(caveats.outside, ": behind a link that leads out of the checkout, so it is not read",
                         " behind links that lead out of the checkout", remarks);
    add_remarks_on_files(caveats.damaged, ": a part of it does not parse; lines and signatures there are the indexer's",
                         " with parts that do not parse", remarks);
    if (caveats.has_no_sources) {
        remarks.push_back(checkout +
                          ": holds none of the page's files; name the folder that was indexed with --checkout");
    }
    if (caveats.has_no_outside) {
        remarks.emplace_back(
            "the page consists of every file of the index: nothing is outside of it, so no use from outside is known");
    }
    return remarks;
}

WatchfulReader::WatchfulReader(storage::Database& db, const PageSources& sources, std::span<const std::string> paths)
    : db_(db), sources_(sources), has_no_outside_(are_all(db, paths)), noted_damage_(noted_damage(db)) {}

std::optional<std::vector<std::string>> WatchfulReader::read(const models::Text& path) {
    using State = PageSource::State;
    db_.check_interrupt();
    PageSource source = sources_.read(path);
    is_any_there_ = is_any_there_ || source.state != State::MISSING;
    is_any_asked_ = true;
    if (source.state == State::WITHHELD) {
        withheld_.push_back(path);
    }
    if (source.state == State::OUTSIDE) {
        outside_.push_back(path);
    }
    if (source.state != State::READ && source.state != State::CHANGED) {
        return std::nullopt;
    }
    if (source.state == State::CHANGED) {
        changed_.push_back(path);
    }
    if (noted_damage_.contains(std::string(path))) {
        damaged_.push_back(path);
    }
    return std::move(source.lines);
}

Caveats WatchfulReader::caveats() const {
    return {.changed = changed_,
            .withheld = withheld_,
            .outside = outside_,
            .damaged = damaged_,
            .has_no_sources = is_any_asked_ && !is_any_there_,
            .has_no_outside = has_no_outside_};
}

}  // namespace host
