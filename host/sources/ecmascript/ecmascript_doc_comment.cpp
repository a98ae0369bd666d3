#include "host/sources/ecmascript/ecmascript_doc_comment.h"

#include "host/sources/ecmascript/ecmascript_dialect.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace host::sources {

namespace {

using std::string_view;

constexpr string_view DOC_COMMENT_BLANKS = " \t\r\n\f\v*";  // a line may begin with "*"
constexpr std::array<string_view, 3> PARAMETER_TAGS{"param", "arg", "argument"};
constexpr std::array<string_view, 2> RESULT_TAGS{"return", "returns"};
constexpr std::array<string_view, 2> PROPERTY_TAGS{"prop", "property"};

// Takes the tags of a comment one after the other.
class DocTagReader {
  public:
    explicit DocTagReader(string_view text) : text_(text) {}

    DocTags read() {
        while (is_whole_ && find_tag()) {
            read_tag(take_name());
        }
        return tags_;
    }

  private:
    // What tags are about: what stands below the comment, or what a tag before them begins.
    enum class Subject : std::uint8_t { BELOW, ALIAS, OVERLOAD };

    // Goes on to what follows the next "@" that begins a word.
    bool find_tag() {
        do {
            at_ = std::min(text_.find('@', at_), text_.size() - 1) + 1;
        } while (at_ < text_.size() && (at_ < 2 || DOC_COMMENT_BLANKS.find(text_[at_ - 2]) == string_view::npos));
        return at_ < text_.size();
    }

    void read_tag(string_view tag) {
        const string_view type = take_type();
        if (tag == "template") {
            take_type_parameters();
        } else if (tag == "typedef" || tag == "callback") {
            subject_ = Subject::ALIAS;
            tags_.aliases.push_back({.name = take_name(),
                                     .type = type,
                                     .properties = {},
                                     .is_function = tag == "callback",
                                     .parameters = {},
                                     .result = {}});
        } else if (tag == "overload") {
            subject_ = Subject::OVERLOAD;
        } else if (subject_ == Subject::ALIAS) {
            read_tag_of_alias(tag, type, tags_.aliases.back());
        } else if (subject_ == Subject::BELOW) {
            read_tag_of_below(tag, type);
        }
    }

    void read_tag_of_alias(string_view tag, string_view type, DocAlias& alias) {
        if (is_one_of(tag, PROPERTY_TAGS)) {
            take_names_type(type, alias.properties);
        } else if (is_one_of(tag, PARAMETER_TAGS)) {
            take_names_type(type, alias.parameters);
        } else if (is_one_of(tag, RESULT_TAGS)) {
            alias.result = type;
        }
    }

    void read_tag_of_below(string_view tag, string_view type) {
        if (tag == "type") {
            tags_.type = type;
        } else if (tag == "this") {
            tags_.self = type;
        } else if (is_one_of(tag, RESULT_TAGS)) {
            tags_.result = type;
        } else if (is_one_of(tag, PARAMETER_TAGS)) {
            take_names_type(type, tags_.parameters);
        }
    }

    // `a`, `[a]`, `[a=1]`; `a.b` names a member of the one before.
    void take_names_type(string_view type, std::vector<DocName>& names) {
        take('[');
        string_view name = take_name();
        std::vector<DocName>* among = &names;
        if (is_at('.') && !names.empty() && names.back().name == name) {
            ++at_;
            name = take_name();
            among = &names.back().members;
        }
        if (!is_at('.') && !is_at('[')) {  // no member of a member
            among->push_back({.name = name, .type = type.empty() ? take_type() : type, .members = {}});
        }
    }

    // `T`, `T, U`, `[T=A]`
    void take_type_parameters() {
        do {
            take('[');
            tags_.type_parameters.push_back(take_name());
        } while (take(','));
    }

    // `{T}`; empty where there is none.
    string_view take_type() {
        if (!take('{')) {
            return {};
        }
        const std::size_t begin = at_;
        std::size_t depth = 1;
        for (; at_ < text_.size() && depth > 0; ++at_) {
            depth += is_at('{') ? 1 : 0;
            depth -= is_at('}') ? 1 : 0;
        }
        is_whole_ = depth == 0;
        return is_whole_ ? text_.substr(begin, at_ - 1 - begin) : string_view();
    }

    string_view take_name() {
        skip_blanks();
        const std::size_t begin = at_;
        while (at_ < text_.size() && is_doc_name_letter(text_[at_])) {
            ++at_;
        }
        return text_.substr(begin, at_ - begin);
    }

    // Takes a character that stands next, if it does.
    bool take(char wanted) {
        skip_blanks();
        const bool is_there = is_at(wanted);
        at_ += is_there ? 1 : 0;
        return is_there;
    }

    [[nodiscard]] bool is_at(char wanted) const { return at_ < text_.size() && text_[at_] == wanted; }

    void skip_blanks() { at_ = std::min(text_.find_first_not_of(DOC_COMMENT_BLANKS, at_), text_.size()); }

    string_view text_;
    std::size_t at_ = 0;
    DocTags tags_;
    Subject subject_ = Subject::BELOW;
    bool is_whole_ = true;  // no brace is left open
};

}  // namespace

bool is_doc_name_letter(char letter) {
    return ('a' <= letter && letter <= 'z') || ('A' <= letter && letter <= 'Z') || ('0' <= letter && letter <= '9') ||
           letter == '_' || letter == '$' || static_cast<unsigned char>(letter) >= 0x80;
}

bool is_doc_comment(string_view comment) {
    return comment.size() > 4 && comment.starts_with("/**");
}

DocTags read_doc_tags(string_view comment) {
    return DocTagReader(comment.substr(0, comment.size() - 2)).read();
}

}  // namespace host::sources
