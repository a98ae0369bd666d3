#include "host/sources/outline.h"

#include "host/files/file_language.h"
#include "host/sources/captures.h"
#include "host/sources/doc_comments.h"
#include "host/sources/prose.h"
#include "host/sources/regions.h"
#include "host/sources/surroundings.h"
#include "host/sources/uncommented.h"
#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;

// What stands between a signature and what follows it.
string_view without_link(string_view signature) {
    constexpr std::array<string_view, 5> LINKS{"=>", "=", ":", "{", ";"};
    signature = trimmed(signature);
    for (const string_view link : LINKS) {
        if (signature.ends_with(link)) {
            return signature.substr(0, signature.size() - link.size());
        }
    }
    return signature;
}

// So many names of one declaration, and versions of one, have its texts. Nobody writes more, and all of a million names
// would take the square of their memory.
constexpr std::size_t MOST_OF_ONE = 64;

// Reads the captures of one text as its outline.
class OutlineReader {
  public:
    OutlineReader(string_view text, const Language& language, Captures&& captures)
        : text_(text), language_(language), names_(std::move(captures.names)), nodes_(std::move(captures.nodes)),
          surroundings_(surroundings_of(nodes_)), decorators_(std::move(captures.decorators)),
          comments_(std::move(captures.comments)), doc_comments_(text, language, comments_, decorators_),
          exporting_(std::move(captures.exporting)), testing_(std::move(captures.testing)),
          visible_(std::move(captures.visible)), hidden_(std::move(captures.hidden)), local_(std::move(captures.local)),
          tests_(std::move(captures.tests)), slots_(std::move(captures.slots)), public_names_(text, language, captures),
          is_cpp_(captures.is_cpp), is_damaged_(captures.is_damaged), damage_(captures.damage) {
        std::ranges::sort(names_, {}, &CapturedName::name);
        for (std::size_t end = text.find('\n'); end != string_view::npos; end = text.find('\n', end + 1)) {
            line_ends_.push_back(static_cast<std::uint32_t>(end));
        }
    }

    Outline outline() {
        Outline outline{.declarations = {},
                        .public_names = public_names_,
                        .line_count = line_of(last_byte(text_.size())),
                        .is_cpp = is_cpp_,
                        .is_damaged = is_damaged_,
                        .damage = damage_,
                        .test_regions = test_regions(),
                        .slots = std::move(slots_),
                        .syntax = std::nullopt};
        const CapturedName* before = nullptr;
        for (const CapturedName& name : names_) {
            const bool is_again = before != nullptr && before->name == name.name;  // by another match
            if (!is_again && !(name.is_binding && local_.contain(name.name.begin))) {
                add_declaration(name, outline.declarations);
            }
            before = &name;
        }
        return outline;
    }

  private:
    [[nodiscard]] string_view part(Bytes bytes) const { return text_.substr(bytes.begin, bytes.end - bytes.begin); }

    static std::uint32_t last_byte(std::size_t end) {
        return static_cast<std::uint32_t>(std::max<std::size_t>(end, 1) - 1);
    }

    [[nodiscard]] std::int32_t line_of(std::uint32_t offset) const {
        return static_cast<std::int32_t>(std::ranges::lower_bound(line_ends_, offset) - line_ends_.begin()) + 1;
    }

    // What stands before the byte on its line.
    [[nodiscard]] string_view line_before(std::uint32_t offset) const {
        const auto line = std::ranges::lower_bound(line_ends_, offset);
        const std::uint32_t begin = line == line_ends_.begin() ? 0 : *std::prev(line) + 1;
        return part({begin, offset});
    }

    // In UTF-16 code units. To be asked for in order, so that no part of a line is counted twice.
    std::int32_t column_of(std::uint32_t offset) {
        const string_view before = line_before(offset);
        const bool is_on_last_line = last_offset_ + before.size() >= offset;
        const string_view uncounted = is_on_last_line ? part({last_offset_, offset}) : before;
        last_column_ = (is_on_last_line ? last_column_ : 0) + static_cast<std::int32_t>(utf16_units(uncounted));
        last_offset_ = offset;
        return last_column_;
    }

    void add_declaration(const CapturedName& name, std::vector<SourceDeclaration>& declarations) {
        const CapturedNode& node = nodes_.at(name.node);
        const Surroundings& around = surroundings_.at(name.node);
        const Bytes whole = {with_decorators(around.whole.begin), around.whole.end};
        const bool is_marked = around.is_exported || has(exporting_, whole.begin, around.whole.begin);
        const bool is_public = this->is_public(name, around.enclosing, is_marked);
        if (node.is_namespace && is_public) {
            public_namespaces_.insert(name.node);
        }
        SourceDeclaration declaration{
            .name = std::string(part(name.name)),
            .offset = name.name.begin,
            .position = {static_cast<std::int32_t>(name.row) + 1, column_of(name.name.begin)},
            .first_line = line_of(whole.begin),
            .last_line = line_of(last_byte(whole.end)),
            .kind = node.kind,
            .is_at_top = around.is_outermost && !local_.contain(name.name.begin),
            .is_variable = name.is_binding,
            .is_public = is_public,
            .is_constant = node.is_const,
            .signature = {},
            .documentation = {},
            .type_names = {},
        };
        names_of_last_ = name.node == last_node_ ? names_of_last_ + 1 : 1;
        if (names_of_last_ <= MOST_OF_ONE) {
            declaration.signature = signature(node, whole);
            declaration.documentation = node.docstring ? prose_of_docstring(part(*node.docstring))
                                                       : doc_comments_.above(around.whole.begin, whole.begin);
        }
        const bool is_version = language_.has_versions && !declarations.empty() &&
                                declarations.back().name == declaration.name &&
                                declarations.back().kind == declaration.kind && follows_the_last(whole.begin);
        versions_of_last_ = is_version ? versions_of_last_ + 1 : 1;
        if (is_version && versions_of_last_ <= MOST_OF_ONE && declaration.documentation.empty()) {
            declaration.documentation = declarations.back().documentation;
        }
        add_callability(name.node, declaration);
        declarations.push_back(std::move(declaration));
        last_node_ = name.node;
        last_end_ = whole.end;
    }

    // Adds whether a declaration can be called, and by which names, from its node and from the types that are part of
    // it.
    void add_callability(NodeId id, SourceDeclaration& declaration) const {
        std::vector<NodeId> parts{id};
        while (!parts.empty()) {
            const auto found = nodes_.find(parts.back());
            parts.pop_back();
            if (found != nodes_.end()) {
                const CapturedNode& node = found->second;
                declaration.is_callable = declaration.is_callable || node.is_callable;
                declaration.type_names.insert(declaration.type_names.end(), node.type_names.begin(),
                                              node.type_names.end());
                parts.insert(parts.end(), node.parts.begin(), node.parts.end());
            }
        }
    }

    // Whether nothing stands between the last declaration and what begins here.
    [[nodiscard]] bool follows_the_last(std::uint32_t begin) const {
        return last_end_ <= begin && part({last_end_, begin}).find_first_not_of(" \t\r\n;") == string_view::npos;
    }

    // Where the decorators above a declaration begin, between which comments may stand, or else it itself.
    [[nodiscard]] std::uint32_t with_decorators(std::uint32_t begin) const {
        while (true) {
            const std::uint32_t below = comments_.begin_of_run_above(begin, text_);
            const std::uint32_t first = decorators_.begin_of_run_above(below, text_);
            if (first == below) {
                return begin;
            }
            begin = first;
        }
    }

    // Whether one of the decorators that stand from one offset to the other is among `some`.
    static bool has(const Parts& some, std::uint32_t begin, std::uint32_t end) {
        return begin < end && !some.within({begin, end}).empty();
    }

    // The regions of tests, with what decorators say is one.
    [[nodiscard]] std::vector<Lines> test_regions() const {
        std::vector<Bytes> regions = tests_;
        for (const auto& [id, node] : nodes_) {
            const std::uint32_t begin = testing_.all().empty() ? node.bytes.begin : with_decorators(node.bytes.begin);
            if (has(testing_, begin, node.bytes.begin)) {
                regions.push_back({begin, node.bytes.end});
            }
        }
        std::vector<Lines> lines;
        const Regions outermost(std::move(regions));
        for (const Bytes& region : outermost.outermost()) {
            lines.push_back({line_of(region.begin), line_of(last_byte(region.end))});
        }
        return lines;
    }

    [[nodiscard]] bool is_public(const CapturedName& name, NodeId enclosing, bool is_marked) const {
        const bool is_enclosed = enclosing != nullptr;
        if (hidden_.contain(name.name.begin) || (is_enclosed && !public_namespaces_.contains(enclosing))) {
            return false;
        }
        return is_marked || visible_.contain(name.name.begin) ||
               (!is_enclosed && public_names_.contains(std::string(part(name.name))));
    }

    [[nodiscard]] std::string signature(const CapturedNode& node, Bytes whole) const {
        constexpr std::uint32_t LONGEST_VALUE = 160;  // bytes that are still worth a look
        if (node.body) {
            whole.end = std::min(whole.end, *node.body);
        } else if (node.value && (node.value->end - node.value->begin > LONGEST_VALUE ||
                                  part(*node.value).find('\n') != string_view::npos)) {
            whole.end = std::min(whole.end, node.value->begin);
        }
        const string_view before = line_before(whole.begin);
        const std::string code = without_comments(text_, whole, comments_.within(whole));
        return dedented(without_link(code), trimmed(before).empty() ? before.size() : 0);
    }

    string_view text_;
    const Language& language_;
    std::vector<CapturedName> names_;
    std::unordered_map<NodeId, CapturedNode> nodes_;
    std::unordered_map<NodeId, Surroundings> surroundings_;
    Parts decorators_;
    Parts comments_;
    DocComments doc_comments_;
    Parts exporting_;  // decorators
    Parts testing_;    // decorators
    Regions visible_;
    Regions hidden_;
    Regions local_;
    std::vector<Bytes> tests_;
    std::unordered_set<std::string> slots_;
    PublicNames public_names_;
    std::unordered_set<NodeId> public_namespaces_;  // of those that have been read
    bool is_cpp_;
    bool is_damaged_;
    std::size_t damage_;
    std::vector<std::uint32_t> line_ends_;
    // Of the last declaration that has been read.
    NodeId last_node_ = nullptr;
    std::uint32_t last_end_ = 0;
    std::size_t names_of_last_ = 0;     // that have been read
    std::size_t versions_of_last_ = 0;  // with it
    std::uint32_t last_offset_ = 0;     // of its name
    std::int32_t last_column_ = 0;
};

// A text that has been parsed in a language.
class ParsedText {
  public:
    ParsedText(string_view text, const Language& language, SyntaxTree tree, Content content)
        : text_(text), language_(&language), content_(content), tree_(tree),
          captures_(
              captures_in(tree_, text, language, content == Content::NAMES ? Bodies::PASSED_OVER : Bodies::READ)) {}

    [[nodiscard]] std::size_t damage() const { return captures_.damage; }

    // Whether another language may suit the text as well: a part does not parse, and it holds nothing that only C++
    // has.
    [[nodiscard]] bool may_be_of_another() const { return captures_.is_damaged && !captures_.is_cpp; }

    [[nodiscard]] Outline outline() && {
        Outline outline = OutlineReader(text_, *language_, std::move(captures_)).outline();
        if (content_ != Content::DECLARATIONS && language_->read_syntax != nullptr) {
            outline.syntax = language_->read_syntax(text_, tree_.root());
            if (content_ == Content::NAMES) {
                outline.syntax->places = std::vector<syntax::TokenPlace>();  // {} would keep the memory
            }
        }
        return outline;
    }

  private:
    string_view text_;
    const Language* language_;
    Content content_;
    SyntaxTree tree_;
    Captures captures_;
};

std::optional<ParsedText> parsed_text(string_view text, const Language& language, const std::atomic<bool>& is_cancelled,
                                      Content content, const ParserMemory& memory) {
    if (text.starts_with(BYTE_ORDER_MARK)) {
        text.remove_prefix(BYTE_ORDER_MARK.size());
    }
    if (text.size() > LARGEST_SOURCE || !is_utf8(text)) {
        return std::nullopt;
    }
    const std::optional<SyntaxTree> tree = parsed(text, language, is_cancelled, memory);
    return tree ? std::optional<ParsedText>(std::in_place, text, language, *tree, content) : std::nullopt;
}

std::optional<Outline> outline_of(std::optional<ParsedText> parsed) {
    return parsed ? std::optional(std::move(*parsed).outline()) : std::nullopt;
}

}  // namespace

std::optional<Outline> outline_of(string_view text, const Language& language, const std::atomic<bool>& is_cancelled,
                                  Content content) {
    const ParserMemory memory;
    return outline_of(parsed_text(text, language, is_cancelled, content, memory));
}

std::optional<Outline> outline_of(string_view text, string_view stated_language, string_view path,
                                  const std::atomic<bool>& is_cancelled, Content content) {
    const Language* const language = understood_language(stated_language, path);
    if (language == nullptr) {
        return std::nullopt;
    }
    const ParserMemory memory;
    std::optional<ParsedText> parsed = parsed_text(text, *language, is_cancelled, content, memory);
    const Language* const usual = understood_language(usual_language(path), path);
    if (stated_language.empty() && usual != language && parsed && parsed->may_be_of_another()) {
        std::optional<ParsedText> in_c = parsed_text(text, *usual, is_cancelled, content, memory);
        if (in_c && in_c->damage() <= parsed->damage()) {
            return std::move(*in_c).outline();
        }
    }
    return outline_of(std::move(parsed));
}

}  // namespace host::sources
