#include "host/page/budget.h"
#include "host/serve/bounded_text.h"
#include "host/serve/schema.h"
#include "host/serve/tools.h"
#include "host/text/counted.h"
#include "utils/saturating.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace host::serve {

namespace {

Sent whole_number(std::int64_t preset, const std::string& description) {
    return {
        {"type", "integer"}, {"minimum", 0}, {"maximum", 100'000}, {"default", preset}, {"description", description}};
}

Sent section_enum() {
    Sent names = Sent::array();
    for (const Section section : SECTIONS) {
        names.push_back(name_of(section));
    }
    return names;
}

Sent input_schema() {
    const PageOptions presets;
    return object_schema(
        {{"paths",
          {{"type", "array"},
           {"items", {{"type", "string"}, {"minLength", 1}, {"maxLength", LONGEST_PATH}}},
           {"minItems", 1},
           {"maxItems", 1000},
           {"description", "Files of the index. A folder selects the files below it, \".\" selects all files, and a "
                           "pattern such as src/**/*.ts selects the files that it matches."}}},
         {"sections",
          {{"type", "array"},
           {"items", {{"type", "string"}, {"enum", section_enum()}}},
           {"maxItems", SECTIONS.size()},
           {"default", Sent::array()},
           {"description",
            "The sections to write, or the parts of the JSON. An empty list selects all but the outline, which lists "
            "the declarations of each file, one a line with lines, kind, name and signature."}}},
         {"format",
          {{"type", "string"},
           {"enum", {"markdown", "json"}},
           {"default", "markdown"},
           {"description", "markdown for reading, json for programs."}}},
         {"max_bytes",
          {{"type", "integer"},
           {"minimum", 0},
           {"maximum", LONGEST_MESSAGE},
           {"description",
            "The most bytes of Markdown; not for json. The least important parts are cut, and each cut is marked."}}},
         {"max_tokens",
          {{"type", "integer"},
           {"minimum", 0},
           {"maximum", LONGEST_MESSAGE / BYTES_OF_A_TOKEN},
           {"description", "Like max_bytes, at four bytes a token."}}},
         {"with_source",
          {{"type", "boolean"},
           {"default", true},
           {"description", "Whether declarations are shown with their source or with their signatures only."}}},
         {"strict",
          {{"type", "boolean"},
           {"default", false},
           {"description", "Whether the call fails when the index does not hold one of the paths."}}},
         {"total", whole_number(presets.total, "The number of declarations with a block.")},
         {"floor", whole_number(presets.floor, "The number of declarations that each file gets first, its best ones.")},
         {"max_share",
          {{"type", "number"},
           {"minimum", 0},
           {"maximum", PageOptions::LARGEST_SHARE},
           {"default", presets.max_share},
           {"description",
            "The largest share of the total that one file may take while others have declarations left."}}},
         {"deep", whole_number(presets.deep, "The number of names for a deeper treatment.")},
         {"deep_per_file", whole_number(presets.deep_per_file, "The most of these names from one file.")},
         {"neighbours",
          whole_number(presets.neighbours, "The number of declarations of other files to list as dependencies.")},
         {"test", path_list("Patterns for paths that are tests, whatever their names.")},
         {"not_test", path_list("Patterns for paths that are not tests.")}},
        {"paths"});
}

Sent output_schema() {
    return object_schema(
        {{"missing",
          {{"type", "array"},
           {"items", {{"type", "string"}}},
           {"description", "The requested paths that the index does not hold."}}},
         {"remarks",
          {{"type", "array"},
           {"items", {{"type", "string"}}},
           {"description", "What makes the page less certain, such as files that changed since they were indexed."}}}},
        {"missing", "remarks"});
}

PageRequest request_of(const Received& arguments) {
    PageRequest request{.paths = arguments["paths"],
                        .tests = test_rules(arguments),
                        .numbers = {.total = arguments["total"],
                                    .floor = arguments["floor"],
                                    .max_share = arguments["max_share"],
                                    .deep = arguments["deep"],
                                    .deep_per_file = arguments["deep_per_file"],
                                    .neighbours = arguments["neighbours"]},
                        .is_strict = arguments["strict"],
                        .with_source = arguments["with_source"]};
    request.format = arguments["format"] == "json" ? PageRequest::Format::JSON : PageRequest::Format::MARKDOWN;
    if (request.format == PageRequest::Format::JSON && !request.with_source) {
        throw bad_parameter("with_source", "applies to Markdown only: JSON has signatures but no source");
    }
    for (const auto& [name, most] :
         {std::pair("max_bytes", &PageRequest::max_bytes), std::pair("max_tokens", &PageRequest::max_tokens)}) {
        if (!arguments.contains(name)) {
            continue;
        }
        if (request.format == PageRequest::Format::JSON) {
            throw bad_parameter(name, "applies to Markdown only");
        }
        request.*most = arguments[name].get<std::size_t>();
    }
    for (const std::string section : arguments["sections"]) {
        request.only.add(section_named(section).value());
    }
    return request;
}

std::string rendered(const RequestedPage& page, const Call& call) {
    BoundedText text(call, LONGEST_MESSAGE);
    std::ostream out(&text);
    out.exceptions(std::ios::badbit);
    page.write(out);
    return text.take();
}

ToolAnswer run(const Received& arguments, const ToolContext& context, const Call& call) {
    return grounded(request_of(arguments), context, call);
}

}  // namespace

PageRequest page_request(const Received& arguments) {
    return request_of(checked(arguments, input_schema()));
}

bool is_long_page(storage::Database& db, std::span<const std::string> files) {
    constexpr std::size_t MANY_FILES = 100;
    constexpr std::int64_t MANY_DECLARATIONS = 5'000;
    constexpr std::int64_t MANY_USES = 20'000;
    if (files.size() > MANY_FILES) {
        return true;
    }
    std::vector<RowId> ids;
    std::int64_t declarations = 0;
    db.read_files_at(files, [&](const FileRow& file) {
        ids.push_back(file.id);
        declarations = utils::saturating_sum(declarations, file.declarations);
    });
    if (declarations > MANY_DECLARATIONS) {
        return true;
    }
    std::int64_t uses = 0;
    db.read_declarations_in(std::move(ids),
                            [&](const DeclarationRow& row) { uses = utils::saturating_sum(uses, row.uses); });
    return uses > MANY_USES;
}

ToolAnswer grounded(const PageRequest& request, const ToolContext& context, const Call& call) {
    constexpr std::int64_t STEPS = 3;
    if (asks_for_many_patterns(request.paths, request.tests)) {
        call.take_long();
    }
    PageRequest here = request;
    here.checkout = context.checkout;
    ToolAnswer answer;
    context.index.borrow(
        [&call] { call.check(); },
        [&](storage::Database& db) {
            const RequestedPage page(here, db, [&](std::span<const std::string> files) {
                if (is_long_page(db, files)) {
                    call.take_long();
                }
                call.report(1, STEPS, "found " + counted(std::ssize(files), "file"));
            });
            answer.remarks = page.remarks();
            if (page.is_failure()) {
                throw ToolFailure(lines_of(answer.remarks));
            }
            const wiki::scope::ScopeFacts& facts = page.page().facts;
            call.report(2, STEPS,
                        "read " + counted(std::ssize(facts.inbound) + std::ssize(facts.outbound), "reference"));
            answer.text = rendered(page, call);
            call.report(3, STEPS, "written");

            answer.structured = text_of({{"missing", page.page().missing}, {"remarks", answer.remarks}});
        });
    return answer;
}

Tool ground_page_tool() {
    const std::string name = "ground_page";
    return {.name = name,
            .definition = tool_definition(
                name, "Ground a wiki page",
                "States facts about a set of source files, from an index of the repository and its checkout: the size "
                "and purpose of each file, the most important declarations with their source, who uses them from "
                "outside, which tests reach them, which public code nothing uses, and what they depend on. Call it "
                "before you write about files, and write nothing of these kinds that it does not state. Ask for the "
                "outline only to learn what files declare before you ask for a page. Set max_tokens to fit a page "
                "into your context.",
                input_schema(), output_schema()),
            .run = run};
}

}  // namespace host::serve
