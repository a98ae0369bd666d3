#include "host/lookup/declarations.h"
#include "host/lookup/files.h"
#include "host/lookup/index_stats.h"
#include "host/lookup/listings.h"
#include "host/lookup/listings_json.h"
#include "host/schemas/schemas.h"
#include "host/serve/tools.h"

#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace host::serve {

namespace {

constexpr std::int64_t MOST_LISTED = 10'000;

template <class Result>
std::string json_of(const Result& result) {
    std::ostringstream out;
    write_json(out, result);
    return one_line(out.str());
}

template <class Result>
std::string text_for_people(const Result& result) {
    std::ostringstream out;
    write_text(out, result);
    return out.str();
}

void ask(const ToolContext& context, const Call& call, const std::function<void(storage::Database&)>& question) {
    context.index.borrow([&call] { call.check(); }, question);
}

ToolAnswer run_find(const Received& arguments, const ToolContext& context, const Call& call) {
    const std::string name = arguments["name"];
    ToolAnswer answer;
    ask(context, call, [&](storage::Database& index) {
        const FoundDeclarations found = find_declarations(index, name, arguments["limit"]);
        answer.structured = json_of(found);
        answer.text = found.count == 0 ? nothing_found(name) + "\n" : text_for_people(found);
        if (const std::int64_t more = found.count - std::ssize(found.best); more > 0) {
            answer.remarks.push_back("... and " + std::to_string(more) + " more; " +
                                     (found.count > MOST_LISTED
                                          ? "a longer name finds fewer"
                                          : "a limit of " + std::to_string(found.count) + " lists all"));
        }
    });
    return answer;
}

ToolAnswer run_list(const Received& arguments, const ToolContext& context, const Call& call) {
    const std::vector<std::string> paths = arguments["paths"];
    const std::vector<PathRule> tests = test_rules(arguments);
    if (asks_for_many_patterns(paths, tests)) {
        call.take_long();
    }
    ToolAnswer answer;
    ask(context, call, [&](storage::Database& index) {
        const ListedFiles listed = list_files(index, paths, tests);
        if (listed.is_failure) {
            throw ToolFailure(lines_of(listed.remarks));
        }
        answer = {.text = text_for_people(std::span(listed.files)),
                  .structured = json_of(std::span(listed.files)),
                  .remarks = listed.remarks};
    });
    return answer;
}

ToolAnswer run_stats(const Received& /*arguments*/, const ToolContext& context, const Call& call) {
    ToolAnswer answer;
    ask(context, call, [&](storage::Database& index) {
        const IndexStats stats = index_stats(index);
        answer = {.text = text_for_people(stats), .structured = json_of(stats)};
    });
    return answer;
}

}  // namespace

Tool find_declarations_tool() {
    const std::string name = "find_declarations";
    return {.name = name,
            .definition = tool_definition(
                name, "Find declarations by name",
                "Finds classes, functions and other declarations by name: first exact matches, then names that begin "
                "with it, then names that contain it, each ordered by uses in production code. Returns kind, path, "
                "lines and uses. Call it to learn which file declares something, before you ask for a page of that "
                "file.",
                object_schema({{"name",
                                {{"type", "string"},
                                 {"minLength", 1},
                                 {"maxLength", LONGEST_PATH},
                                 {"description", "A name, its beginning or a part of it; Subject.next finds the next "
                                                 "of Subject."}}},
                               {"limit",
                                {{"type", "integer"},
                                 {"minimum", 1},
                                 {"maximum", MOST_LISTED},
                                 {"default", 50},
                                 {"description", "The most declarations to list."}}}},
                              {"name"}),
                Sent::parse(schemas::FIND)),
            .run = run_find};
}

Tool list_files_tool() {
    const std::string name = "list_files";
    return {.name = name,
            .definition = tool_definition(
                name, "List the files of the index",
                "Lists files of the index with their language, the number of their declarations, the lines that these "
                "cover, and which files are tests. Call it to decide which files a page is about.",
                object_schema({{"paths", path_list("Files, folders and patterns such as src/**/*.ts; by default all.")},
                               {"test", path_list("Patterns for paths that are tests, whatever their names.")},
                               {"not_test", path_list("Patterns for paths that are not tests.")}}),
                Sent::parse(schemas::FILES)),
            .run = run_list};
}

Tool index_stats_tool() {
    const std::string name = "index_stats";
    return {.name = name,
            .definition = tool_definition(
                name, "Describe the index",
                "Describes the index: files by language, declarations by kind, references by resolution, when and from "
                "what it was made, and what its import could not use. Call it to judge how much of a repository the "
                "other tools know.",
                object_schema(Sent::object()), Sent::parse(schemas::STATS)),
            .run = run_stats};
}

}  // namespace host::serve
