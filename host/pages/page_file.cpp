#include "host/pages/page_file.h"

#include "host/page/budget.h"
#include "host/pages/digest.h"
#include "host/pages/stamp.h"

#include <sstream>
#include <utility>

namespace host::pages {

PageFile page_file(const WikiPage& page, const PageFormat& format, storage::Database& db,
                   const BeforeReading& before_reading) {
    const RequestedPage requested(page.request, db, before_reading);
    PageFile file{.text = {}, .remarks = requested.remarks(), .is_failure = requested.is_failure()};
    if (file.is_failure) {
        return file;
    }
    for (const storage::ScopeFile& each : requested.page().facts.files) {
        file.files.emplace_back(each.path);
    }
    file.facts = stated_facts(page.title, requested, db);
    try {
        std::ostringstream out;
        format.write(out, requested, db, {.title = page.title, .stamp = open_stamp(digest_of(to_json(file.facts)))});
        file.text = sealed(std::move(out).str());
    } catch (const TooFewBytes& error) {
        file.remarks = {error.what()};
        file.is_failure = true;
    }
    return file;
}

}  // namespace host::pages
