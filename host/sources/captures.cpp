#include "host/sources/captures.h"

#include "host/sources/pattern_matcher.h"
#include "host/sources/query.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

Bytes bytes_of(const TSNode& node) {
    return {ts_node_start_byte(node), ts_node_end_byte(node)};
}

string_view text_of(string_view text, const TSNode& node) {
    const auto [begin, end] = bytes_of(node);
    return text.substr(begin, end - begin);
}

// One match of one pattern.
class Match {
  public:
    Match(string_view text, const Query& query, std::uint32_t pattern, std::span<const CapturedPart> captured)
        : text_(text), query_(query), pattern_(pattern), captured_(captured) {}

    [[nodiscard]] std::uint32_t pattern() const { return pattern_; }

    // Whether every predicate of the pattern holds.
    [[nodiscard]] bool holds() const {
        return std::ranges::all_of(query_.predicates(pattern_), [&](const Predicate& predicate) {
            return (operand(predicate.left) == operand(predicate.right)) == predicate.is_equal;
        });
    }

    // Whether the match has such a capture.
    [[nodiscard]] bool has(Capture wanted) const {
        return std::ranges::any_of(captured_,
                                   [&](const CapturedPart& each) { return query_.capture(each.capture) == wanted; });
    }

    // Calls `visit` with each capture and its node.
    void for_each_capture(const auto& visit) const {
        for (const CapturedPart& each : captured_) {
            visit(query_.capture(each.capture), each.node);
        }
    }

  private:
    // The text that an operand of a predicate stands for; none for a capture that is not in the match.
    [[nodiscard]] std::optional<string_view> operand(const PredicateOperand& operand) const {
        if (!operand.is_capture) {
            return operand.text;
        }
        const auto found = std::ranges::find(captured_, operand.capture, &CapturedPart::capture);
        return found == captured_.end() ? std::nullopt : std::optional(text_of(text_, found->node));
    }

    string_view text_;
    const Query& query_;
    std::uint32_t pattern_;
    std::span<const CapturedPart> captured_;
};

// Adds what a match says of the node that it is about; returns that node, if it is about one.
std::optional<NodeId> add_subject(const Match& match, Captures& captures) {
    std::optional<NodeId> subject;
    match.for_each_capture([&](Capture capture, const TSNode& node) {
        if (!is_subject(capture)) {
            return;
        }
        subject = node.id;
        CapturedNode& captured = captures.nodes[node.id];
        captured.bytes = bytes_of(node);
        if (is_kind(capture) && match.pattern() >= captured.kind_at) {
            captured.kind = name_of(capture);
            captured.kind_at = match.pattern();
        }
        captured.is_binding = captured.is_binding || capture == Capture::BINDING;
        captured.is_namespace = captured.is_namespace || capture == Capture::NAMESPACE;
        captured.is_wrapper = captured.is_wrapper || capture == Capture::WRAPPER;
        captured.is_callable = captured.is_callable || capture == Capture::CALLABLE;
        captured.is_const = captured.is_const || capture == Capture::CONST;
        captured.is_exported = captured.is_exported || capture == Capture::EXPORTED;
    });
    return subject;
}

// Adds the parts that a match names of its subject.
void add_parts(const Match& match, string_view text, NodeId id, Captures& captures) {
    CapturedNode& subject = captures.nodes[id];
    match.for_each_capture([&](Capture capture, const TSNode& node) {
        const Bytes bytes = bytes_of(node);
        switch (capture) {
        case Capture::NAME: {
            const auto [row, column] = ts_node_start_point(node);
            captures.names.push_back({bytes, row, column, id, match.has(Capture::BINDING)});
            subject.is_declaration = true;
            break;
        }
        case Capture::BODY:
            subject.body = std::min(bytes.begin, subject.body.value_or(bytes.begin));
            break;
        case Capture::VALUE:
            subject.value = bytes;
            break;
        case Capture::DOCSTRING:
            subject.docstring = bytes;
            break;
        case Capture::PART:
            subject.parts.push_back(node.id);
            break;
        case Capture::NAMED:
            subject.type_names.push_back(text_of(text, node));
            break;
        default:
            break;
        }
    });
}

// Adds what a match says of the text as a whole.
void add_surroundings(const Match& match, string_view text, Captures& captures) {
    match.for_each_capture([&](Capture capture, const TSNode& node) {
        const Bytes bytes = bytes_of(node);
        switch (capture) {
        case Capture::DECORATOR:
            captures.decorators.push_back(bytes);
            break;
        case Capture::EXPORTING:
            captures.exporting.push_back(bytes);
            break;
        case Capture::TESTING:
            captures.testing.push_back(bytes);
            break;
        case Capture::TEST:
            captures.tests.push_back(bytes);
            break;
        case Capture::COMMENT: {  // one of Rust may have the line end behind it
            const auto size = static_cast<std::uint32_t>(trimmed_end(text_of(text, node)).size());
            captures.comments.push_back({bytes.begin, bytes.begin + size});
            break;
        }
        case Capture::VISIBLE:
            captures.visible.push_back(bytes);
            break;
        case Capture::HIDDEN:
            captures.hidden.push_back(bytes);
            break;
        case Capture::LOCAL:
            captures.local.push_back(bytes);
            break;
        case Capture::EXPORT:
            captures.exports.emplace(text_of(text, node));
            break;
        case Capture::SLOT:
            captures.slots.emplace(text_of(text, node));
            break;
        case Capture::LIST:
            captures.has_list = true;
            break;
        case Capture::MODULE:
            captures.is_module = true;
            break;
        case Capture::CPP:
            captures.is_cpp = true;
            break;
        default:
            break;
        }
    });
}

// Collects what the patterns of a query capture in a tree.
class CaptureWalk {
  public:
    CaptureWalk(const SyntaxTree& tree, string_view text, const Query& query, Bodies bodies)
        : text_(text), query_(query), bodies_(bodies), root_(tree.root()), matcher_(root_) {
        captures_.is_damaged = ts_node_has_error(root_);
        captures_.damage = tree.damage();
    }

    Captures captures() {
        TSTreeCursor cursor = ts_tree_cursor_new(root_);
        const std::unique_ptr<TSTreeCursor, decltype(&ts_tree_cursor_delete)> owner(&cursor, ts_tree_cursor_delete);
        while (true) {
            const TSNode node = ts_tree_cursor_current_node(&cursor);
            add_matches(node);
            if (!is_passed_over(node) && ts_tree_cursor_goto_first_child(&cursor)) {
                continue;
            }
            while (!ts_tree_cursor_goto_next_sibling(&cursor)) {
                if (!ts_tree_cursor_goto_parent(&cursor)) {
                    return std::move(captures_);
                }
            }
        }
    }

  private:
    void add_matches(TSNode node) {
        for (const auto& [pattern, place] : query_.candidates(ts_node_symbol(node))) {
            matcher_.match(*pattern, node, [&, place = place](std::span<const CapturedPart> captured) {
                if (const Match match(text_, query_, place, captured); match.holds()) {
                    add(match);
                }
            });
        }
    }

    void add(const Match& match) {
        if (const std::optional<NodeId> subject = add_subject(match, captures_)) {
            add_parts(match, text_, *subject, captures_);
        }
        add_surroundings(match, text_, captures_);
        match.for_each_capture([&](Capture capture, const TSNode& node) {
            if (capture == Capture::ENCLOSED) {
                enclosed_.insert(node.id);
            }
        });
    }

    // A body may be all that tells C++ from C, so that it is read until something else has told that. So is one with a
    // "#", which may define a macro.
    [[nodiscard]] bool is_passed_over(TSNode node) const {
        if (bodies_ == Bodies::READ || !enclosed_.contains(node.id)) {
            return false;
        }
        const bool may_tell_language = query_.has(Capture::CPP) && !captures_.is_cpp;
        return !may_tell_language && text_of(text_, node).find('#') == string_view::npos;
    }

    string_view text_;
    const Query& query_;
    Bodies bodies_;
    TSNode root_;
    PatternMatcher matcher_;
    std::unordered_set<NodeId> enclosed_;
    Captures captures_;
};

}  // namespace

Captures captures_in(const SyntaxTree& tree, string_view text, const Language& language, Bodies bodies) {
    return CaptureWalk(tree, text, query_of(language), bodies).captures();
}

}  // namespace host::sources
