#include "host/serve/completion.h"

#include "host/paths/completed_paths.h"
#include "host/serve/page_prompt.h"
#include "host/serve/page_resource.h"

#include <algorithm>
#include <cstddef>

namespace host::serve {

namespace {

Completion path_at_end(const std::string& before, const std::string& beginning) {
    if (beginning.size() > LONGEST_PATH || beginning.find('\0') != std::string::npos) {
        return {};  // not the beginning of a path
    }
    return {.is_path = true, .before = before, .beginning = beginning};
}

Completion of_resource(const Received& reference, const std::string& name, const std::string& value) {
    if (const std::string& uri = text_parameter(reference, "uri"); uri != page_template()["uriTemplate"]) {
        throw bad_parameter("ref.uri", "no such template: " + uri);
    }
    if (name != "path") {
        throw bad_parameter("argument.name", "no such argument: " + name);
    }
    return path_at_end("", value);
}

Completion of_prompt(const Received& reference, const std::string& name, const std::string& value) {
    if (const std::string& prompt = text_parameter(reference, "name"); prompt != write_wiki_page_prompt()["name"]) {
        throw bad_parameter("ref.name", "no such prompt: " + prompt);
    }
    if (name == "paths") {
        const std::size_t line = value.rfind('\n') + 1;  // 0 when there is only one line
        return path_at_end(value.substr(0, line), value.substr(line));
    }
    if (name == "max_bytes") {
        return {.values = {"4000", "8000", "16000", "32000", "64000"}, .beginning = value};
    }
    throw bad_parameter("argument.name", "no such argument: " + name);
}

}  // namespace

Completion completion_of(const Received& params) {
    const Received reference = object_parameter(params, "ref");
    const Received argument = object_parameter(params, "argument");
    const std::string& type = text_parameter(reference, "type");
    const std::string& name = text_parameter(argument, "name");
    const std::string& value = text_parameter(argument, "value");
    if (type == "ref/resource") {
        return of_resource(reference, name, value);
    }
    if (type == "ref/prompt") {
        return of_prompt(reference, name, value);
    }
    throw bad_parameter("ref.type", "must be one of ref/prompt, ref/resource");
}

std::string completed(const Completion& completion, const ToolContext& context, const Call& call) {
    constexpr std::size_t MOST = 100;  // the limit of the protocol
    std::vector<std::string> values;
    for (const std::string& value : completion.values) {
        if (value.starts_with(completion.beginning)) {
            values.push_back(value);
        }
    }
    if (completion.is_path) {
        context.index.borrow([&call] { call.check(); },
                             [&](storage::Database& db) { values = completed_paths(db, completion.beginning); });
    }
    Sent first = Sent::array();
    for (std::size_t at = 0; at < std::min(values.size(), MOST); ++at) {
        first.push_back(completion.before + values[at]);
    }
    return text_of({{"completion", {{"values", first}, {"total", values.size()}, {"hasMore", values.size() > MOST}}}});
}

}  // namespace host::serve
