#include "host/pages/update.h"

#include "host/pages/digest.h"
#include "host/pages/fact_changes.h"
#include "host/pages/one_state.h"
#include "host/pages/page_file.h"
#include "host/pages/record.h"
#include "host/pages/stamp.h"
#include "host/pages/wiki_folder.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace host::pages {

namespace {

// The name of the file that leads to the pages.
constexpr std::string_view INDEX = "index";

std::string line_about(const std::string& title, const std::string& what) {
    return title + ": " + what;
}

class Update {
  public:
    Update(const Wiki& wiki, const UpdateOptions& options)
        : wiki_(wiki), options_(options),
          folder_(options.folder, options.is_check ? WikiFolder::Access::READ : WikiFolder::Access::WRITE),
          old_record_(read_record(folder_)), outcomes_(wiki.pages.size()), files_(wiki.pages.size()) {
        const auto page = std::ranges::find(wiki.pages, INDEX, &WikiPage::name);
        if (options.format.write_index && page != wiki.pages.end()) {
            throw std::runtime_error(line_about(page->title, "the name index is that of the file that leads to all "
                                                             "pages; set `name`"));
        }
    }

    // Compares a page with its file, and stages the file if they differ. For any thread.
    void make(std::size_t at, storage::Database& db) {
        PageFile page = page_file(wiki_.pages[at], options_.format, db);
        const std::scoped_lock lock(mutex_);
        files_[at] = std::move(page.files);
        Outcome& outcome = outcomes_[at];
        outcome.remarks = std::move(page.remarks);
        if (page.is_failure) {
            outcome.state = Outcome::State::FAILED;
            return;
        }
        replace(file_of(wiki_.pages[at]), page.text, std::move(page.facts), outcome);
    }

    UpdateReport finish(storage::Database& db) {
        if (options_.format.write_index) {
            make_index();
        }
        UpdateReport report;
        report_pages(report);
        report.coverage = coverage_of(files_, wiki_.tests, db);
        const std::vector<std::string> removed = report_gone_files(report);
        if (!options_.is_check) {
            folder_.commit();
            for (const std::string& file : removed) {
                folder_.remove(file);
            }
            stage_record(folder_, record_);
            folder_.commit();
        }
        return report;
    }

  private:
    struct Outcome {
        enum class State : std::uint8_t { UNCHANGED, CHANGED, FAILED };
        State state = State::UNCHANGED;
        std::string why = {};
        std::vector<std::string> remarks = {};
    };

    [[nodiscard]] std::string file_of(const WikiPage& page) const { return page.name + options_.format.ending; }

    [[nodiscard]] std::string index_file() const { return std::string(INDEX) + options_.format.ending; }

    // Stages a file that does not have the text yet, and records what it states. One that is somebody else's stays.
    void replace(const std::string& file, const std::string& text, StatedFacts facts, Outcome& outcome) {
        const std::optional<std::string> old = folder_.read(file);
        if (old && old != text && !options_.is_check && !is_as_sealed(*old)) {
            outcome.state = Outcome::State::FAILED;
            outcome.remarks.push_back(folder_.path_of(file) +
                                      " is not as wiki-scope wrote it; remove it to have it written anew");
            return;
        }
        if (old != text) {
            outcome.state = Outcome::State::CHANGED;
            outcome.why = why(file, old, facts);
            if (!options_.is_check) {
                folder_.stage(file, text);
            }
        }
        record_[file] = {.facts = std::move(facts), .version = options_.version};
    }

    // The file that leads to the pages. It states which there are.
    void make_index() {
        std::vector<MadePage> pages;
        StatedFacts facts;
        for (const WikiPage& page : wiki_.pages) {
            const std::string file = file_of(page);
            if (record_.contains(file)) {
                pages.push_back({page.title, file});
                facts.about(Subject::PAGE).push_back({.name = page.title, .path = file});
            }
        }
        std::ostringstream out;
        options_.format.write_index(out, pages, open_stamp(digest_of(to_json(facts))));
        replace(index_file(), sealed(std::move(out).str()), std::move(facts), outcomes_.emplace_back());
    }

    // Why a file differs from its page.
    [[nodiscard]] std::string why(const std::string& file, const std::optional<std::string>& old,
                                  const StatedFacts& facts) const {
        if (!old) {
            return "new";
        }
        if (!is_as_sealed(*old)) {
            return "the file is not as wiki-scope wrote it";
        }
        const auto recorded = old_record_.find(file);
        if (recorded == old_record_.end()) {
            return "nothing tells what it stated before";
        }
        std::string changes = changes_between(recorded->second.facts, facts);
        if (!changes.empty()) {
            return changes;
        }
        return recorded->second.version == options_.version ? "other details"
                                                            : "written by wiki-scope " + recorded->second.version;
    }

    void report_pages(UpdateReport& report) {
        for (std::size_t at = 0; at < outcomes_.size(); ++at) {
            const std::string title = at < wiki_.pages.size() ? wiki_.pages[at].title : std::string(INDEX);
            const auto& [state, why, remarks] = outcomes_[at];
            std::vector<std::string>& lines = state == Outcome::State::FAILED ? report.failures : report.remarks;
            for (const std::string& remark : remarks) {
                lines.push_back(line_about(title, remark));
            }
            if (state == Outcome::State::CHANGED) {
                report.changes.push_back(line_about(title, why));
            }
            report.unchanged += state == Outcome::State::UNCHANGED ? 1 : 0;
        }
    }

    // Tells of the files of pages that are gone, and returns those that are to be removed. The others stay recorded.
    std::vector<std::string> report_gone_files(UpdateReport& report) {
        std::set<std::string> current{options_.format.write_index ? index_file() : ""};
        for (const WikiPage& page : wiki_.pages) {
            current.insert(file_of(page));
        }
        std::vector<std::string> removed;
        for (const auto& [file, recorded] : old_record_) {
            if (current.contains(file)) {
                record_.try_emplace(file, recorded);  // of a page that has failed
                continue;
            }
            const std::optional<std::string> text = folder_.read(file);
            if (!text) {
                continue;
            }
            const std::string path = folder_.path_of(file);
            if (options_.prunes && is_as_sealed(*text)) {
                report.removed.push_back(path + ": of no page of the wiki");
                removed.push_back(file);
                continue;
            }
            report.remarks.push_back(path + (options_.prunes ? ": of no page of the wiki, but not as wiki-scope wrote "
                                                               "it, so it is kept"
                                                             : ": of no page of the wiki; remove it with --prune"));
            record_.emplace(file, recorded);
        }
        return removed;
    }

    const Wiki& wiki_;
    const UpdateOptions& options_;
    WikiFolder folder_;
    const Record old_record_;
    std::mutex mutex_;
    std::vector<Outcome> outcomes_;                // of the pages, as `files_`
    std::vector<std::vector<std::string>> files_;  // that each page is about
    Record record_;
};

}  // namespace

UpdateReport update_wiki(const Index& index, const Wiki& wiki, const UpdateOptions& options,
                         const CheckInterrupt& check_interrupt, const std::function<void(std::size_t done)>& on_done) {
    Update update(wiki, options);
    const OneState state(index, wiki.pages.size(), check_interrupt);
    if (options.format.begin) {
        options.format.begin(wiki, files_of_pages(wiki, state.database()));
    }
    state.for_each(
        wiki.pages.size(), [&](std::size_t at, storage::Database& db) { update.make(at, db); }, on_done);
    return update.finish(state.database());
}

}  // namespace host::pages
