#include "host/pages/page_format.h"

namespace host::pages {

namespace {

// Writes what the request asks for.
void write_as_requested(std::ostream& out, const RequestedPage& page, storage::Database& /*db*/, const PageHead& head) {
    page.write(out, head);
}

}  // namespace

PageFormat markdown_format() {
    return {.ending = ".md", .write = write_as_requested};
}

PageFormat json_format() {
    return {.ending = ".json", .write = write_as_requested};
}

}  // namespace host::pages
