#include "host/sources/captures.h"

#include "host/sources/query.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

struct CursorDeleter {
    void operator()(TSQueryCursor* cursor) const { ts_query_cursor_delete(cursor); }
};

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
    Match(string_view text, const Query& query, const TSQueryMatch& match)
        : text_(text), query_(query), pattern_(match.pattern_index), captures_(match.captures, match.capture_count) {}

    [[nodiscard]] std::uint32_t pattern() const { return pattern_; }

    // Whether every predicate of the pattern holds: (#eq? @capture "text"), (#eq? @capture @other), and #not-eq?.
    [[nodiscard]] bool holds() const {
        std::uint32_t count = 0;
        const TSQueryPredicateStep* const steps = ts_query_predicates_for_pattern(query_.handle(), pattern_, &count);
        constexpr std::uint32_t STEPS = 4;  // of each: the name, the two arguments, the end
        for (std::uint32_t at = 0; at + STEPS <= count; at += STEPS) {
            const std::span predicate(steps + at, STEPS);
            const bool is_wanted = argument(predicate[0]) == "eq?";
            if ((argument(predicate[1]) == argument(predicate[2])) != is_wanted) {
                return false;
            }
        }
        return true;
    }

    // Whether the match has such a capture.
    [[nodiscard]] bool has(Capture wanted) const {
        return std::ranges::any_of(captures_,
                                   [&](const TSQueryCapture& each) { return query_.capture(each.index) == wanted; });
    }

    // Calls `visit` with each capture and its node.
    void for_each_capture(const auto& visit) const {
        for (const TSQueryCapture& each : captures_) {
            visit(query_.capture(each.index), each.node);
        }
    }

  private:
    // The text that an argument of a predicate stands for; none for a capture that is not in the match.
    [[nodiscard]] std::optional<string_view> argument(const TSQueryPredicateStep& step) const {
        if (step.type == TSQueryPredicateStepTypeString) {
            std::uint32_t size = 0;
            const char* const literal = ts_query_string_value_for_id(query_.handle(), step.value_id, &size);
            return string_view(literal, size);
        }
        const auto found = std::ranges::find(captures_, step.value_id, &TSQueryCapture::index);
        return found == captures_.end() ? std::nullopt : std::optional(text_of(text_, found->node));
    }

    string_view text_;
    const Query& query_;
    std::uint32_t pattern_;
    std::span<const TSQueryCapture> captures_;
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

}  // namespace

Captures captures_in(const SyntaxTree& tree, string_view text, const Language& language) {
    const Query& query = query_of(language);
    Captures captures;
    const TSNode root = tree.root();
    captures.is_damaged = ts_node_has_error(root);
    captures.damage = tree.damage();
    const std::unique_ptr<TSQueryCursor, CursorDeleter> cursor(ts_query_cursor_new());
    ts_query_cursor_exec(cursor.get(), query.handle(), root);
    for (TSQueryMatch found{}; ts_query_cursor_next_match(cursor.get(), &found);) {
        if (const Match match(text, query, found); match.holds()) {
            if (const std::optional<NodeId> subject = add_subject(match, captures)) {
                add_parts(match, text, *subject, captures);
            }
            add_surroundings(match, text, captures);
        }
    }
    return captures;
}

}  // namespace host::sources
