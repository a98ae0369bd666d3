#include "host/changes/changes.h"
#include "host/changes/changes_json.h"
#include "host/changes/changes_markdown.h"
#include "host/paths/source_folder.h"
#include "host/revisions/commits.h"
#include "host/revisions/revision_index.h"
#include "host/schemas/schemas.h"
#include "host/serve/bounded_text.h"
#include "host/serve/tools.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

namespace host::serve {

namespace {

constexpr std::int64_t STEPS_OF_CHANGES = 2;
constexpr std::int64_t MOST_STEPS = 100;

changes::ChangesRequest changes_request(const Received& arguments) {
    return {.paths = arguments["paths"], .tests = test_rules(arguments), .depth = arguments["depth"]};
}

// The index of a revision of the repository that the served index is of.
std::unique_ptr<revisions::RevisionIndex> revision_index(const std::string& name, const std::string& root,
                                                         const Call& call) {
    const revisions::Commits commits(root);
    const std::optional<std::string> commit = commits.find(name);
    if (!commit) {
        throw ToolFailure(name + ": no revision of the repository in " + root);
    }
    return std::make_unique<revisions::RevisionIndex>(
        root, commits, *commit, [&](std::int64_t /*done*/, std::int64_t /*total*/) { call.check(); });
}

template <class Write>
std::string written(const Call& call, Write write) {
    BoundedText text(call, LONGEST_MESSAGE);
    std::ostream out(&text);
    out.exceptions(std::ios::badbit);
    write(out);
    return text.take();
}

ToolAnswer run_changes(const Received& arguments, const ToolContext& context, const Call& call) {
    const changes::ChangesRequest request = changes_request(arguments);
    call.take_long();
    ToolAnswer answer;
    context.index.borrow(
        [&call] { call.check(); },
        [&](storage::Database& index) {
            const std::string root = source_folder(context.checkout, index).path;
            const auto revision = revision_index(arguments["revision"], root, call);
            call.report(1, STEPS_OF_CHANGES, "read the revision");
            const std::unique_ptr<IndexConnection> before = revision->index().connect();
            before->watch([&call] { call.check(); });
            const changes::Changes found = changes::compare(*before->read(), index, request);
            answer.remarks = found.remarks;
            if (found.is_failure) {
                throw ToolFailure(lines_of(answer.remarks));
            }
            std::optional<std::size_t> most;
            if (arguments.contains("max_bytes")) {
                most = arguments["max_bytes"];
            }
            answer.text = found.empty() ? "Nothing has changed.\n"
                                        : written(call, [&](std::ostream& out) { write_markdown(out, found, most); });
            answer.structured = one_line(written(call, [&](std::ostream& out) { write_json(out, found); }));
            call.report(2, STEPS_OF_CHANGES, "compared");
        });
    return answer;
}

}  // namespace

Tool changes_tool() {
    const std::string name = "changes";
    return {
        .name = name,
        .definition = tool_definition(
            name, "Tell what changed",
            "Compares the index with a revision of the checkout's Git repository, whose sources it reads: files and "
            "public declarations that came, went, moved or changed, which other files used them and still do, "
            "which tests use them, and what nothing uses any more. Call it before you judge what a change breaks, "
            "or which pages it concerns.",
            object_schema({{"revision",
                            {{"type", "string"},
                             {"minLength", 1},
                             {"maxLength", LONGEST_PATH},
                             {"description", "A branch, a tag or the hash of a commit, such as main or HEAD~3."}}},
                           {"paths", path_list("Files, folders and patterns to tell of; by default all.")},
                           {"depth",
                            {{"type", "integer"},
                             {"minimum", 1},
                             {"maximum", MOST_STEPS},
                             {"default", 1},
                             {"description", "How many steps to follow from users to their users."}}},
                           {"max_bytes",
                            {{"type", "integer"},
                             {"minimum", 1},
                             {"maximum", LONGEST_MESSAGE},
                             {"description", "How long the Markdown may be."}}},
                           {"test", path_list("Patterns for paths that are tests, whatever their names.")},
                           {"not_test", path_list("Patterns for paths that are not tests.")}},
                          {"revision"}),
            Sent::parse(schemas::DIFF)),
        .run = run_changes};
}

}  // namespace host::serve
