#include "host/sources/captures.h"

#include "host/sources/parser_memory.h"
#include "host/sources/query.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <span>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

struct ParserDeleter {
    void operator()(TSParser* parser) const { ts_parser_delete(parser); }
};
struct TreeDeleter {
    void operator()(TSTree* tree) const { ts_tree_delete(tree); }
};
struct CursorDeleter {
    void operator()(TSQueryCursor* cursor) const { ts_query_cursor_delete(cursor); }
};
using Tree = std::unique_ptr<TSTree, TreeDeleter>;

// How much memory parsing may take, in bytes. What people write takes up to 30 times its size, or a few megabytes; what
// is minified takes up to 140 times.
constexpr std::ptrdiff_t most_memory(string_view text) {
    constexpr std::ptrdiff_t ALWAYS = 67'108'864;
    constexpr std::ptrdiff_t FOR_EACH_BYTE = 64;
    return ALWAYS + FOR_EACH_BYTE * std::ssize(text);
}

// What ends the parsing of a text before its end.
struct Limits {
    std::ptrdiff_t most_memory = 0;  // as `parser_memory` counts it
    const std::atomic<bool>& is_cancelled;
    std::chrono::steady_clock::time_point deadline;

    [[nodiscard]] bool are_passed() const {
        return is_cancelled || parser_memory() > most_memory || std::chrono::steady_clock::now() > deadline;
    }
};

// The limits of one text, and of what is parsed in its stead.
Limits limits_of(string_view text, const std::atomic<bool>& is_cancelled) {
    constexpr std::chrono::seconds LONGEST(5);
    return {parser_memory() + most_memory(text), is_cancelled, std::chrono::steady_clock::now() + LONGEST};
}

// The text that `text`, a `string_view`, has at a byte and behind it, as the parser asks for it.
const char* text_from(void* text, std::uint32_t byte, TSPoint /*place*/, std::uint32_t* size) {
    const string_view& whole = *static_cast<const string_view*>(text);
    const string_view rest = whole.substr(std::min<std::size_t>(byte, whole.size()));
    *size = static_cast<std::uint32_t>(rest.size());
    return rest.data();
}

// None when a limit is passed.
Tree parse(string_view text, const Language& language, Limits& limits) {
    const std::unique_ptr<TSParser, ParserDeleter> parser(ts_parser_new());
    ts_parser_set_language(parser.get(), language.grammar());
    const TSInput input{.payload = &text, .read = text_from, .encoding = TSInputEncodingUTF8, .decode = nullptr};
    const TSParseOptions options{.payload = &limits, .progress_callback = [](TSParseState* state) {
                                     return static_cast<Limits*>(state->payload)->are_passed();
                                 }};
    return Tree(ts_parser_parse_with_options(parser.get(), nullptr, input, options));
}

// How many bytes of the text do not parse, what is missing counted as one.
std::size_t damage(const TSNode& root) {
    constexpr TSSymbol ERROR = 0xFFFF;
    TSTreeCursor cursor = ts_tree_cursor_new(root);
    const std::unique_ptr<TSTreeCursor, decltype(&ts_tree_cursor_delete)> owner(&cursor, ts_tree_cursor_delete);
    std::size_t bytes = 0;
    while (true) {
        const TSNode node = ts_tree_cursor_current_node(&cursor);
        const bool is_error = ts_node_symbol(node) == ERROR;
        bytes += is_error ? ts_node_end_byte(node) - ts_node_start_byte(node) : ts_node_is_missing(node) ? 1 : 0;
        if (!is_error && ts_node_has_error(node) && ts_tree_cursor_goto_first_child(&cursor)) {
            continue;
        }
        while (!ts_tree_cursor_goto_next_sibling(&cursor)) {
            if (!ts_tree_cursor_goto_parent(&cursor)) {
                return bytes;
            }
        }
    }
}

// The tree of the text, or of the text mended where less of that is damaged.
Tree best_tree(string_view text, const Language& language, Limits limits) {
    Tree tree = parse(text, language, limits);
    if (tree == nullptr || language.mend == nullptr || !ts_node_has_error(ts_tree_root_node(tree.get()))) {
        return tree;
    }
    Tree mended = parse(language.mend(text), language, limits);
    const bool is_better =
        mended != nullptr && damage(ts_tree_root_node(mended.get())) < damage(ts_tree_root_node(tree.get()));
    return is_better ? std::move(mended) : std::move(tree);
}

// Whether a tree may be that of a source: nothing nests as deep, and no damaged node is as wide, as what keeps a query
// busy for minutes. Its time grows with the square of either.
bool is_of_a_source(const TSNode& root) {
    constexpr std::size_t DEEPEST = 2'000;
    constexpr std::size_t WIDEST = 10'000;
    TSTreeCursor cursor = ts_tree_cursor_new(root);
    const std::unique_ptr<TSTreeCursor, decltype(&ts_tree_cursor_delete)> owner(&cursor, ts_tree_cursor_delete);
    std::vector<std::size_t> places{0};  // of the nodes from the root to here, among their siblings
    std::vector<bool> damage{false};     // of their parents
    while (places.size() <= DEEPEST && !(damage.back() && places.back() > WIDEST)) {
        const bool is_damaged = ts_node_has_error(ts_tree_cursor_current_node(&cursor));
        if (ts_tree_cursor_goto_first_child(&cursor)) {
            places.push_back(0);
            damage.push_back(is_damaged);
            continue;
        }
        while (!ts_tree_cursor_goto_next_sibling(&cursor)) {
            if (!ts_tree_cursor_goto_parent(&cursor)) {
                return true;
            }
            places.pop_back();
            damage.pop_back();
        }
        ++places.back();
    }
    return false;
}

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

    // Whether every predicate of the pattern holds: (#eq? @capture "text"), (#eq? @capture @other).
    [[nodiscard]] bool holds() const {
        std::uint32_t count = 0;
        const TSQueryPredicateStep* const steps = ts_query_predicates_for_pattern(query_.handle(), pattern_, &count);
        constexpr std::uint32_t STEPS = 4;  // of each: the name, the two arguments, the end
        for (std::uint32_t at = 0; at + STEPS <= count; at += STEPS) {
            const std::span predicate(steps + at, STEPS);
            if (argument(predicate[1]) != argument(predicate[2])) {
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

// Adds the link that a match is about, if it is about one.
void add_link(const Match& match, string_view text, Captures& captures) {
    Link link;
    std::optional<Bytes> bytes;
    match.for_each_capture([&](Capture capture, const TSNode& node) {
        const bool is_all = capture == Capture::ALL;
        const bool is_name = capture == Capture::LINK || capture == Capture::PASSED;
        link.is_exported = link.is_exported || is_all || capture == Capture::PASSED;
        if (is_name || is_all) {
            bytes = bytes_of(node);
        }
        if (is_name) {
            link.name = text_of(text, node);
        }
        if (capture == Capture::ORIGINAL) {
            link.original = text_of(text, node);
        } else if (capture == Capture::FROM || is_all) {
            link.module = text_of(text, node);
        }
    });
    if (bytes) {
        captures.links.push_back({std::move(link), *bytes});
    }
}

// Adds what a match says of names and of where they mean what.
void add_names(const Match& match, Captures& captures) {
    std::optional<Bytes> scope;
    match.for_each_capture([&](Capture capture, const TSNode& node) {
        const Bytes bytes = bytes_of(node);
        switch (capture) {
        case Capture::MENTION:
            captures.mentions.push_back(bytes);
            break;
        case Capture::UNMENTIONED:
            captures.unmentioned.insert(bytes.begin);
            break;
        case Capture::BOUND:
            captures.bound.push_back(bytes);
            break;
        case Capture::MEMBERS:
            captures.scopes.push_back({bytes, true});
            break;
        case Capture::SCOPE:
            scope = {std::min(scope.value_or(bytes).begin, bytes.begin),
                     std::max(scope.value_or(bytes).end, bytes.end)};
            break;
        default:
            break;
        }
    });
    if (scope) {
        captures.scopes.push_back({*scope});
    }
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

std::optional<Captures> captures_of(string_view text, const Language& language, const std::atomic<bool>& is_cancelled) {
    const Query& query = query_of(language);
    const Tree tree = best_tree(text, language, limits_of(text, is_cancelled));
    if (tree == nullptr || !is_of_a_source(ts_tree_root_node(tree.get()))) {
        return std::nullopt;
    }
    Captures captures;
    const TSNode root = ts_tree_root_node(tree.get());
    captures.is_damaged = ts_node_has_error(root);
    captures.damage = damage(root);
    const std::unique_ptr<TSQueryCursor, CursorDeleter> cursor(ts_query_cursor_new());
    ts_query_cursor_exec(cursor.get(), query.handle(), root);
    for (TSQueryMatch found{}; ts_query_cursor_next_match(cursor.get(), &found);) {
        if (const Match match(text, query, found); match.holds()) {
            if (const std::optional<NodeId> subject = add_subject(match, captures)) {
                add_parts(match, text, *subject, captures);
            }
            add_link(match, text, captures);
            add_names(match, captures);
            add_surroundings(match, text, captures);
        }
    }
    return captures;
}

}  // namespace host::sources
