#include "host/serve/tools.h"

#include "host/text/glob.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

namespace host::serve {

std::span<const Tool> tools() {
    static const std::array TOOLS{ground_page_tool(), find_declarations_tool(), list_files_tool(), index_stats_tool(),
                                  changes_tool()};
    return TOOLS;
}

std::string one_line(std::string json) {
    std::erase(json, '\n');
    return json;
}

std::string lines_of(std::span<const std::string> remarks) {
    std::string lines;
    for (const std::string& remark : remarks) {
        lines.append(lines.empty() ? "" : "\n").append(remark);
    }
    return lines;
}

std::vector<PathRule> test_rules(const Received& arguments) {
    for (const std::string key : {"test", "not_test"}) {
        const Received& patterns = arguments[key];
        for (std::size_t at = 0; at < patterns.size(); ++at) {
            try {
                Glob(patterns[at].get<std::string>());
            } catch (const std::invalid_argument& error) {
                throw bad_parameter(key + "[" + std::to_string(at) + "]", error.what());
            }
        }
    }
    return rules_of(arguments["test"].get<std::vector<std::string>>(),
                    arguments["not_test"].get<std::vector<std::string>>());
}

bool asks_for_many_patterns(std::span<const std::string> paths, std::span<const PathRule> tests) {
    constexpr std::ptrdiff_t MANY = 10;
    return std::ranges::count_if(paths, is_glob) + std::ssize(tests) > MANY;
}

Sent path_list(const std::string& description) {
    return {{"type", "array"},
            {"items", {{"type", "string"}, {"minLength", 1}, {"maxLength", LONGEST_PATH}}},
            {"maxItems", 1000},
            {"default", Sent::array()},
            {"description", description}};
}

Sent tool_definition(const std::string& name, const std::string& title, const std::string& description,
                     const Sent& input, const Sent& output) {
    return {{"name", name},
            {"title", title},
            {"description", description},
            {"inputSchema", input},
            {"outputSchema", output},
            {"annotations",
             {{"title", title},
              {"readOnlyHint", true},
              {"destructiveHint", false},
              {"idempotentHint", true},
              {"openWorldHint", false}}}};
}

Sent object_schema(const Sent& members, const std::vector<std::string>& required) {
    Sent schema = {{"type", "object"}, {"properties", members}, {"additionalProperties", false}};
    if (!required.empty()) {
        schema["required"] = required;
    }
    return schema;
}

}  // namespace host::serve
