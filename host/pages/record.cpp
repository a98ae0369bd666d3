#include "host/pages/record.h"

#include "host/pages/page_name.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace host::pages {

namespace {

// Begins with a dot, as the name of no page does.
constexpr const char* FILE_NAME = ".wiki-scope-pages.json";

std::string quoted(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// One line for each file: so two branches of a repository that write different pages can be merged.
std::string to_json(const Record& record) {
    std::string text = "{";
    for (const auto& [file, recorded] : record) {
        text.append(text.size() == 1 ? "\n" : ",\n")
            .append(quoted(file))
            .append(R"(: {"version": )")
            .append(quoted(recorded.version))
            .append(R"(, "facts": )")
            .append(pages::to_json(recorded.facts))
            .append("}");
    }
    return text + "\n}\n";
}

// None for a text that is no record. The folder may be one that somebody else has filled, so paths are checked.
std::optional<Record> record_in(std::string_view text) {
    try {
        Record record;
        const nlohmann::json json = nlohmann::json::parse(text);
        for (const auto& [file, recorded] : json.items()) {
            if (!is_page_name(file)) {
                return std::nullopt;
            }
            record[file] = {.facts = read_facts(recorded.at("facts").dump()), .version = recorded.at("version")};
        }
        return record;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

}  // namespace

Record read_record(const WikiFolder& folder) {
    const std::optional<std::string> text = folder.read(FILE_NAME);
    std::optional<Record> record = text ? record_in(*text) : Record();
    if (!record) {
        throw std::runtime_error(folder.path_of(FILE_NAME) + ": not a record of what pages state; remove it");
    }
    return std::move(*record);
}

void stage_record(WikiFolder& folder, const Record& record) {
    const std::string text = to_json(record);
    if (folder.read(FILE_NAME) != text) {
        folder.stage(FILE_NAME, text);
    }
}

}  // namespace host::pages
