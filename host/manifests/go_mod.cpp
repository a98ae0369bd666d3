#include "host/manifests/manifest_readers.h"
#include "host/text/blanks.h"
#include "host/text/split_lines.h"

#include <string>

namespace host::manifests {

namespace {

// Takes the first word off a line; quotes around it are no part of it.
std::string_view take_word(std::string_view& line) {
    line = trimmed(line);
    std::string_view word = line.substr(0, line.find_first_of(BLANKS));
    line.remove_prefix(word.size());
    if (word.size() >= 2 && (word.front() == '"' || word.front() == '`') && word.back() == word.front()) {
        word = word.substr(1, word.size() - 2);
    }
    return word;
}

}  // namespace

void read_go_mod(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    std::string_view block;  // of the lines in parentheses
    const std::string text = files.text(path).value_or("");
    for (std::string_view line : split_lines(text)) {
        line = trimmed(line.substr(0, line.find("//")));
        const bool is_in_block = !block.empty();
        const std::string_view directive = is_in_block ? block : take_word(line);
        const std::string_view first = take_word(line);
        if (first == "(" || first == ")") {
            block = first == "(" ? directive : std::string_view();
        } else if (directive == "module") {
            package.name = first;
        } else if (directive == "require" && !first.empty()) {
            package.dependencies.emplace(first);
        }
    }
}

}  // namespace host::manifests
