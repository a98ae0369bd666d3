// A wiki as its file describes it: which pages there are, and what each is about.
#pragma once

#include "host/page/requested_page.h"
#include "host/rules/path_rules.h"

#include <string>
#include <vector>

namespace host::pages {

struct WikiPage {
    std::string title;    ///< no other page has it
    std::string name;     ///< the path of its file in the wiki's folder, without the ending: "server/overview"
    PageRequest request;  ///< without a checkout, as Markdown
};

struct Wiki {
    std::vector<WikiPage> pages;  ///< in the order of the file
    std::vector<PathRule> tests;  ///< which files are tests, by the defaults
};

/// Reads the file of a wiki. It is TOML:
///
///     [defaults]                # options for every page, which a page's own replace
///     max-bytes = 60000
///     not-test  = ["examples/"]
///
///     [[page]]
///     title = "The server"
///     paths = ["src/server", "src/shared/*.ts"]   # as `wiki-scope page` takes them, from the root of the checkout
///     name  = "server/overview"                   # by default the title: "the-server"
///     total = 40
///
/// Options are those of `wiki-scope page`: total, floor, max-share, deep, deep-per-file, neighbours, max-bytes,
/// max-tokens, only, no-source, strict, test and not-test.
///
/// Throws `std::runtime_error` with one line that names the file, the line in it and the fault: a file that cannot be
/// read, invalid TOML, an unknown key, a wrong value, a page without title or paths, two pages with one title or name,
/// or a name that leads out of the folder.
Wiki read_wiki(const std::string& path);

}  // namespace host::pages
