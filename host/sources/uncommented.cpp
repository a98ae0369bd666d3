#include "host/sources/uncommented.h"

#include "host/text/blanks.h"
#include "host/text/split_lines.h"

namespace host::sources {

namespace {

using std::string_view;

constexpr char GAP = '\0';  // where a comment stood

std::string without_gaps(string_view line) {
    constexpr string_view NEED_NO_BLANK = " \t([{<";
    std::string code;
    bool is_behind_gap = false;
    for (const char character : line) {
        const bool is_spare = is_behind_gap && (character == ' ' || character == '\t') && !code.empty() &&
                              NEED_NO_BLANK.find(code.back()) != string_view::npos;
        is_behind_gap = character == GAP || is_spare;
        if (!is_behind_gap) {
            code += character;
        }
    }
    return code;
}

}  // namespace

std::string without_comments(string_view text, Bytes whole, std::span<const Bytes> comments) {
    std::string marked;
    for (const Bytes& comment : comments) {
        marked.append(text.substr(whole.begin, comment.begin - whole.begin)) += GAP;
        whole.begin = comment.end;
    }
    marked += text.substr(whole.begin, whole.end - whole.begin);
    if (comments.empty()) {
        return marked;
    }
    std::string code;
    for (const string_view line : split_lines(marked)) {
        const std::string kept = without_gaps(line);
        if (kept.size() == line.size() || !trimmed(kept).empty()) {
            code.append(kept).append("\n");
        }
    }
    return code;
}

}  // namespace host::sources
