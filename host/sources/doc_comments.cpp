#include "host/sources/doc_comments.h"

#include "host/sources/prose.h"
#include "host/text/ascii.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;

std::vector<Bytes> leading(std::span<const Bytes> comments, string_view text) {
    std::vector<Bytes> leading;
    bool is_leading = true;
    std::uint32_t end = 0;
    for (const Bytes& comment : comments) {
        string_view gap = text.substr(end, comment.begin - end);
        if (const std::size_t line = gap.rfind('\n'); line != string_view::npos) {
            is_leading = true;
            gap.remove_prefix(line);
        }
        is_leading = is_leading && trimmed(gap).empty();
        if (is_leading) {
            leading.push_back(comment);
        }
        end = comment.end;
    }
    return leading;
}

}  // namespace

DocComments::DocComments(string_view text, const Language& language, const Parts& comments, const Parts& decorators)
    : text_(text), language_(language), decorators_(decorators), leading_(leading(comments.all(), text)) {}

std::string DocComments::above(std::uint32_t begin, std::uint32_t first) const {
    const bool may_stand_between = language_.documentation_place == CommentPlace::ABOVE_OR_BELOW_DECORATORS;
    const auto above_decorators = [&](std::uint32_t offset) {
        return may_stand_between ? decorators_.begin_of_run_above(offset, text_) : offset;
    };
    std::vector<string_view> found;  // from the last to the first
    std::uint32_t below = above_decorators(may_stand_between ? begin : first);
    const Bytes* comment = leading_.last_before(below);
    while (comment != nullptr && is_near(*comment, below)) {
        const string_view text = text_.substr(comment->begin, comment->end - comment->begin);
        const bool is_block = text.starts_with("/*");
        const bool is_documentation = document(text);
        if (!found.empty() && (is_block || !is_documentation)) {
            break;
        }
        if (is_documentation) {
            found.push_back(text);
        }
        if (is_documentation && is_block) {
            break;
        }
        below = above_decorators(comment->begin);
        comment = leading_.last_before(below);
    }
    std::string run;
    std::for_each(found.rbegin(), found.rend(), [&](string_view text) { run.append(text).append("\n"); });
    return prose_of_comments(run);
}

// Whether a comment is one of those that document; "/**/" and a line of slashes never are.
bool DocComments::document(string_view comment) const {
    return starts_with_any(comment, language_.documentation_marks) && !comment.starts_with("/**/") &&
           !comment.starts_with("////");
}

// Whether a comment stands where it may document what begins below it.
bool DocComments::is_near(const Bytes& comment, std::uint32_t below) const {
    const string_view gap = text_.substr(comment.end, below - comment.end);
    return trimmed(gap).empty() &&
           (language_.documentation_place != CommentPlace::RIGHT_ABOVE || std::ranges::count(gap, '\n') <= 1);
}

}  // namespace host::sources
