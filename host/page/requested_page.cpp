#include "host/page/requested_page.h"

#include "host/index/notes.h"
#include "host/page/budget.h"
#include "host/page/page_json.h"
#include "host/page/page_markdown.h"
#include "host/paths/missing_paths.h"
#include "host/rules/noted_rules.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace host {

namespace {

// Where the page's sources are; throws when nobody says so.
SourceFolder existing_folder(const PageRequest& request, storage::Database& db) {
    SourceFolder folder = source_folder(request.checkout, db);
    std::error_code error;
    if (folder.path.empty() || (request.checkout.empty() && !std::filesystem::is_directory(folder.path, error))) {
        throw std::runtime_error(
            db.name() +
            (folder.path.empty() ? ": made without sources" : ": made in " + folder.path + ", which is gone") +
            "; name the folder that its paths are relative to with --checkout");
    }
    return folder;
}

// Where citations lead; throws when that takes a commit which nobody knows.
std::optional<SourceLinks> links_of(const PageRequest& request, storage::Database& db) {
    if (!request.source_url) {
        return std::nullopt;
    }
    SourceLinks links{.url = *request.source_url};
    if (links.url.has_commit()) {
        links.commit = request.commit.empty() ? db.noted(notes::COMMIT) : request.commit;
    }
    if (links.url.has_commit() && links.commit.empty()) {
        throw std::runtime_error(db.name() + ": of no commit that is known; name one in --source-url, or import from a "
                                             "checkout of Git that has one");
    }
    return links;
}

// How long the Markdown may be.
std::optional<std::size_t> most_bytes(const PageRequest& request) {
    if (!request.max_tokens) {
        return request.max_bytes;
    }
    constexpr std::size_t MOST = std::numeric_limits<std::size_t>::max();
    const std::size_t tokens = std::min(*request.max_tokens, MOST / BYTES_OF_A_TOKEN);
    return std::min(request.max_bytes.value_or(MOST), tokens * BYTES_OF_A_TOKEN);
}

}  // namespace

RequestedPage::RequestedPage(const PageRequest& request, storage::Database& db, const BeforeReading& before_reading)
    : request_(request), folder_(existing_folder(request, db)), tests_(with_noted_rules(request.tests, db)),
      in_force_(tests_, [&db] { db.check_interrupt(); }), shared_summaries_(db.noted(notes::SHARED_SUMMARIES)), db_(db),
      links_(links_of(request, db)),
      page_(load_page(db_, Checkout(folder_.path), request.paths, request.numbers,
                      folder_.is_the_users_choice ? SourceAccess::ALL : SourceAccess::AS_INDEXED, before_reading)) {}

bool RequestedPage::is_failure() const {
    return !page_.missing.empty() && (request_.is_strict || page_.facts.files.empty());
}

std::vector<std::string> RequestedPage::remarks() const {
    std::vector<std::string> remarks = remarks_on_missing(page_.missing, page_.suggestions, is_failure());
    if (!is_failure()) {
        for (std::string& remark : remarks_on(page_.caveats, folder_.path)) {
            remarks.push_back(std::move(remark));
        }
    }
    return remarks;
}

void RequestedPage::write(std::ostream& out, const PageHead& head) const {
    if (request_.format == PageRequest::Format::JSON) {
        write_json(out, page_, page_values(page_, db_, request_.only), request_.only, head);
    } else {
        write_markdown(out, page_, db_,
                       {.only = request_.only,
                        .head = head,
                        .with_source = request_.with_source,
                        .max_bytes = most_bytes(request_),
                        .links = source_links()});
    }
}

}  // namespace host
