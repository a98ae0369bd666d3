#include "host/command/source_url_option.h"

#include "host/git/references.h"
#include "host/links/source_links.h"
#include "host/worktree/checkout_index.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <stdexcept>

namespace host {

void add_source_url_option(CLI::App& command, std::string& url) {
    const auto problem_of = [](const std::string& text) -> std::string {
        try {
            const SourceUrl must_be_one(text);
            return "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    };
    command
        .add_option("--source-url", url,
                    "Make each citation a link, but not in JSON: an address with {commit}, {path}, {first} and {last}")
        ->type_name("URL")
        ->check(problem_of);
}

std::string commit_of_checkout(const IndexOption& index) {
    if (!index.place.empty()) {
        return "";
    }
    namespace fs = std::filesystem;
    const fs::path root =
        index.checkout.empty() ? worktree::checkout_around(fs::current_path()) : fs::path(index.checkout);
    return git::checked_out_commit(root).value_or("");
}

}  // namespace host
