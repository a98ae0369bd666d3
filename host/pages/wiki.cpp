#include "host/pages/wiki.h"

#include "host/files/whole_file.h"
#include "host/pages/page_name.h"
#include "host/rules/toml_file.h"
#include "host/text/control_characters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace host::pages {

namespace {

// What the options of a page say, those of its tests apart, since each of the two lists can be replaced.
struct Options {
    PageRequest request;
    std::vector<std::string> tests;
    std::vector<std::string> no_tests;
};

// An option in the file.
struct Given {
    const TomlFile& file;
    const toml::table& table;
    std::string_view key;

    [[nodiscard]] const toml::node& value() const { return *table.get(key); }
    [[nodiscard]] std::runtime_error must_be(const std::string& what) const {
        return file.fault(value().source(), "`" + std::string(key) + "` must be " + what);
    }
    [[nodiscard]] std::int64_t number() const {
        const std::optional<std::int64_t> number = value().value_exact<std::int64_t>();
        if (!number || *number < 0) {
            throw must_be("a whole number that is not negative");
        }
        return *number;
    }
    [[nodiscard]] double share() const {
        const std::optional<double> share = value().is_number() ? value().value<double>() : std::nullopt;
        if (!share || !(0 <= *share && *share <= PageOptions::LARGEST_SHARE)) {
            throw must_be("a number from 0 to 1");
        }
        return *share;
    }
    [[nodiscard]] bool flag() const {
        const std::optional<bool> flag = value().value_exact<bool>();
        if (!flag) {
            throw must_be("true or false");
        }
        return *flag;
    }
    [[nodiscard]] std::vector<std::string> patterns() const { return file.patterns(table, key); }
    [[nodiscard]] SectionChoice sections() const {
        SectionChoice choice;
        for (const std::string& name : file.strings(table, key)) {
            const std::optional<Section> section = section_named(name);
            if (!section) {
                throw file.fault(value().source(),
                                 "no such section: " + name + "; the sections are " + section_names());
            }
            choice.add(*section);
        }
        return choice;
    }
};

struct Option {
    std::string_view key;
    void (*set)(Options& options, const Given& given);
};

constexpr std::array OPTIONS{
    Option{"total", [](Options& o, const Given& given) { o.request.numbers.total = given.number(); }},
    Option{"floor", [](Options& o, const Given& given) { o.request.numbers.floor = given.number(); }},
    Option{"max-share", [](Options& o, const Given& given) { o.request.numbers.max_share = given.share(); }},
    Option{"deep", [](Options& o, const Given& given) { o.request.numbers.deep = given.number(); }},
    Option{"deep-per-file", [](Options& o, const Given& given) { o.request.numbers.deep_per_file = given.number(); }},
    Option{"neighbours", [](Options& o, const Given& given) { o.request.numbers.neighbours = given.number(); }},
    Option{"max-bytes",
           [](Options& o, const Given& given) { o.request.max_bytes = static_cast<std::size_t>(given.number()); }},
    Option{"max-tokens",
           [](Options& o, const Given& given) { o.request.max_tokens = static_cast<std::size_t>(given.number()); }},
    Option{"only", [](Options& o, const Given& given) { o.request.only = given.sections(); }},
    Option{"no-source", [](Options& o, const Given& given) { o.request.with_source = !given.flag(); }},
    Option{"strict", [](Options& o, const Given& given) { o.request.is_strict = given.flag(); }},
    Option{"test", [](Options& o, const Given& given) { o.tests = given.patterns(); }},
    Option{"not-test", [](Options& o, const Given& given) { o.no_tests = given.patterns(); }},
};

constexpr std::array<std::string_view, 2> KEYS_OF_WIKI{"defaults", "page"};
constexpr std::array<std::string_view, 3> KEYS_OF_PAGE{"title", "name", "paths"};

// The keys that a table may have: some, and those of the options.
std::vector<std::string_view> with_options(std::span<const std::string_view> keys) {
    std::vector<std::string_view> all(keys.begin(), keys.end());
    for (const Option& option : OPTIONS) {
        all.push_back(option.key);
    }
    return all;
}

// The options, where the table gives none those of `defaults`.
Options options_in(const TomlFile& file, const toml::table& table, Options defaults) {
    for (const auto& [key, set] : OPTIONS) {
        if (table.contains(key)) {
            set(defaults, {file, table, key});
        }
    }
    return defaults;
}

Options defaults_in(const TomlFile& file) {
    const toml::node* const defaults = file.root().get("defaults");
    if (defaults == nullptr) {
        return {};
    }
    const toml::table* const table = defaults->as_table();
    if (table == nullptr) {
        throw file.fault(defaults->source(), "`defaults` must be a table: [defaults]");
    }
    file.refuse_unknown_keys(*table, with_options({}));
    return options_in(file, *table, {});
}

// A text on one line; empty where there is none.
std::string line_under(const TomlFile& file, const toml::table& table, std::string_view key) {
    const toml::node* const value = table.get(key);
    if (value == nullptr) {
        return "";
    }
    std::string text = value->value_exact<std::string>().value_or("");
    if (text.empty() || has_control_character(text)) {
        throw file.fault(value->source(), "`" + std::string(key) + "` must be a text on one line");
    }
    return text;
}

std::string name_of(const TomlFile& file, const toml::table& table, const std::string& title) {
    std::string name = line_under(file, table, "name");
    if (name.empty()) {
        name = name_for_title(title);
    }
    if (!is_page_name(name)) {
        throw file.fault(table.contains("name") ? table.get("name")->source() : table.source(),
                         table.contains("name")
                             ? "`name` must be a path in the wiki's folder: its parts begin with no \".\""
                             : "the title gives no name for a file; say one with `name`");
    }
    return name;
}

WikiPage page_in(const TomlFile& file, const toml::table& table, const Options& defaults) {
    file.refuse_unknown_keys(table, with_options(KEYS_OF_PAGE));
    Options options = options_in(file, table, defaults);
    WikiPage page{.title = line_under(file, table, "title"), .name = {}, .request = std::move(options.request)};
    page.request.paths = file.strings(table, "paths");
    page.request.tests = rules_of(options.tests, options.no_tests);
    if (page.title.empty() || page.request.paths.empty()) {
        throw file.fault(table.source(), page.title.empty() ? "a page needs a `title`" : "a page needs `paths`");
    }
    page.name = name_of(file, table, page.title);
    return page;
}

std::vector<WikiPage> pages_in(const TomlFile& file, const Options& defaults) {
    const toml::node* const list = file.root().get("page");
    const toml::array* const tables = list == nullptr ? nullptr : list->as_array();
    if (tables == nullptr || !tables->is_array_of_tables()) {
        throw file.fault(list == nullptr ? file.root().source() : list->source(),
                         "a wiki needs pages, each of which begins with [[page]]");
    }
    std::vector<WikiPage> pages;
    std::set<std::string> titles;
    std::set<std::string> names;
    for (const toml::node& node : *tables) {
        const toml::table& table = *node.as_table();
        const WikiPage& page = pages.emplace_back(page_in(file, table, defaults));
        if (!titles.insert(page.title).second) {
            throw file.fault(table.source(), "another page has the same title: " + page.title);
        }
        if (!names.insert(page.name).second) {
            throw file.fault(table.source(), "another page has the same name: " + page.name + "; set `name`");
        }
    }
    return pages;
}

}  // namespace

Wiki read_wiki(const std::string& path) {
    constexpr std::size_t LARGEST = 16'777'216;  // bytes
    const std::optional<std::string> text = whole_file(path, LARGEST);
    if (!text) {
        throw std::runtime_error(path + ": no such file");
    }
    const TomlFile file(path, *text);
    file.refuse_unknown_keys(file.root(), KEYS_OF_WIKI);
    const Options defaults = defaults_in(file);
    return {.pages = pages_in(file, defaults), .tests = rules_of(defaults.tests, defaults.no_tests)};
}

}  // namespace host::pages
