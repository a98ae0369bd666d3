#include "host/sources/syntax_tree.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;

struct ParserDeleter {
    void operator()(TSParser* parser) const { ts_parser_delete(parser); }
};

// How much memory parsing may take, in bytes. What people write takes up to 30 times its size, or a few megabytes; what
// is minified takes up to 140 times.
constexpr std::size_t most_memory(string_view text) {
    constexpr std::size_t ALWAYS = 67'108'864;
    constexpr std::size_t FOR_EACH_BYTE = 64;
    return ALWAYS + FOR_EACH_BYTE * text.size();
}

// How long this thread has run so far: unlike the time of day, the same on a machine that does much else.
std::chrono::nanoseconds processor_time() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// What ends the parsing of a text before its end.
struct Limits {
    const ParserMemory& memory;
    std::size_t most_memory = 0;  // as it counts
    const std::atomic<bool>& is_cancelled;
    std::chrono::nanoseconds most_time{};  // as `processor_time` counts it
    std::size_t asked = 0;                 // how often

    // Looks at the time now and then: a question to the system takes longer than what is parsed meanwhile.
    [[nodiscard]] bool are_passed() {
        constexpr std::size_t PERIOD = 32;
        const bool is_time_up = ++asked % PERIOD == 0 && processor_time() > most_time;
        return is_cancelled || is_time_up || memory.size() > most_memory;
    }
};

// The limits of one text, and of what is parsed in its stead.
Limits limits_of(string_view text, const std::atomic<bool>& is_cancelled, const ParserMemory& memory) {
    constexpr std::chrono::seconds LONGEST(5);
    return {memory, memory.size() + most_memory(text), is_cancelled, processor_time() + LONGEST};
}

// The text that `text`, a `string_view`, has at a byte and behind it, as the parser asks for it.
const char* text_from(void* text, std::uint32_t byte, TSPoint /*place*/, std::uint32_t* size) {
    const string_view& whole = *static_cast<const string_view*>(text);
    const string_view rest = whole.substr(std::min<std::size_t>(byte, whole.size()));
    *size = static_cast<std::uint32_t>(rest.size());
    return rest.data();
}

// Parses the text. What `former`, which may be null, has of a text that is the same there is taken over. None when a
// limit is passed.
const TSTree* parse(string_view text, const Language& language, Limits& limits, const TSTree* former = nullptr) {
    const std::unique_ptr<TSParser, ParserDeleter> parser(ts_parser_new());
    ts_parser_set_language(parser.get(), language.grammar());
    const TSInput input{.payload = &text, .read = text_from, .encoding = TSInputEncodingUTF8, .decode = nullptr};
    const TSParseOptions options{.payload = &limits, .progress_callback = [](TSParseState* state) {
                                     return static_cast<Limits*>(state->payload)->are_passed();
                                 }};
    return ts_parser_parse_with_options(parser.get(), former, input, options);
}

// How many bytes of the text do not parse, what is missing counted as one. Damage in what does not parse as a whole
// counts again: of two trees that are each one error, the one with more in it that parses is better.
std::size_t damaged_bytes(const TSNode& root) {
    constexpr TSSymbol ERROR = 0xFFFF;
    TSTreeCursor cursor = ts_tree_cursor_new(root);
    const std::unique_ptr<TSTreeCursor, decltype(&ts_tree_cursor_delete)> owner(&cursor, ts_tree_cursor_delete);
    std::size_t bytes = 0;
    while (true) {
        const TSNode node = ts_tree_cursor_current_node(&cursor);
        const bool is_error = ts_node_symbol(node) == ERROR;
        bytes += is_error ? ts_node_end_byte(node) - ts_node_start_byte(node) : ts_node_is_missing(node) ? 1 : 0;
        if (ts_node_has_error(node) && ts_tree_cursor_goto_first_child(&cursor)) {
            continue;
        }
        while (!ts_tree_cursor_goto_next_sibling(&cursor)) {
            if (!ts_tree_cursor_goto_parent(&cursor)) {
                return bytes;
            }
        }
    }
}

// The less damaged of two trees, either of which may be missing: the first of equals.
const TSTree* less_damaged(const TSTree* one, const TSTree* other) {
    if (one == nullptr || other == nullptr) {
        return one == nullptr ? other : one;
    }
    return damaged_bytes(ts_tree_root_node(other)) < damaged_bytes(ts_tree_root_node(one)) ? other : one;
}

// The place of a byte in the text, counted on from an earlier place.
struct TextPlace {
    std::uint32_t byte = 0;
    TSPoint point{};

    void go_to(std::size_t target, string_view text) {
        for (; byte < target; ++byte) {
            point = text[byte] == '\n' ? TSPoint{.row = point.row + 1, .column = 0}
                                       : TSPoint{.row = point.row, .column = point.column + 1};
        }
    }
};

// The tree of a text, with the parts marked in which another text of its length differs.
const TSTree* marked(const TSTree* tree, string_view text, string_view other) {
    TSTree* const marked = ts_tree_copy(tree);
    TextPlace place;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == other[at]) {
            continue;
        }
        place.go_to(at, text);
        const TextPlace begin = place;
        while (at < text.size() && text[at] != other[at]) {
            ++at;
        }
        place.go_to(at, text);
        const TSInputEdit edit{.start_byte = begin.byte,
                               .old_end_byte = place.byte,
                               .new_end_byte = place.byte,
                               .start_point = begin.point,
                               .old_end_point = place.point,
                               .new_end_point = place.point};
        ts_tree_edit(marked, &edit);
    }
    return marked;
}

// The tree of a text that has been mended; none where there was nothing to mend. Of the tree of the text itself it
// takes over what has parsed, so that only what has changed and what is damaged is parsed again.
const TSTree* mended_tree(const TSTree* tree, string_view text, const Language& language, Limits& limits) {
    const std::string mended = language.mend == nullptr ? std::string(text) : language.mend(text);
    return mended == text ? nullptr : parse(mended, language, limits, marked(tree, text, mended));
}

bool is_whole(const TSTree* tree) {
    return tree != nullptr && !ts_node_has_error(ts_tree_root_node(tree));
}

// The tree of the text, or of the text rewritten or mended where that is damaged no more, or less.
const TSTree* best_tree(string_view text, const Language& language, Limits limits) {
    const std::string rewriting = language.rewrite == nullptr ? std::string(text) : language.rewrite(text);
    const TSTree* const rewritten = rewriting == text ? nullptr : parse(rewriting, language, limits);
    if (is_whole(rewritten)) {
        return rewritten;
    }
    const TSTree* const tree = parse(text, language, limits);
    if (tree == nullptr || is_whole(tree)) {
        return tree;
    }
    return less_damaged(rewritten, less_damaged(tree, mended_tree(tree, text, language, limits)));
}

// Whether a tree may be that of a source: nothing nests as deep, and no damaged node is as wide, as what keeps a query
// busy for minutes. Its time grows with the square of either. Looks only into nodes that hold enough to be either.
bool is_of_a_source(const TSNode& root) {
    constexpr std::size_t DEEPEST = 2'000;
    constexpr std::size_t WIDEST = 10'000;
    TSTreeCursor cursor = ts_tree_cursor_new(root);
    const std::unique_ptr<TSTreeCursor, decltype(&ts_tree_cursor_delete)> owner(&cursor, ts_tree_cursor_delete);
    std::vector<std::size_t> places{0};  // of the nodes from the root to here, among their siblings
    std::vector<bool> damage{false};     // of their parents
    while (places.size() <= DEEPEST && !(damage.back() && places.back() > WIDEST)) {
        const TSNode node = ts_tree_cursor_current_node(&cursor);
        const bool may_be_too_deep = places.size() + ts_node_descendant_count(node) > DEEPEST;
        if (may_be_too_deep && ts_tree_cursor_goto_first_child(&cursor)) {
            places.push_back(0);
            damage.push_back(ts_node_has_error(node));
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

}  // namespace

TSNode SyntaxTree::root() const {
    return ts_tree_root_node(tree_);
}

std::size_t SyntaxTree::damage() const {
    return damaged_bytes(root());
}

std::optional<SyntaxTree> parsed(string_view text, const Language& language, const std::atomic<bool>& is_cancelled,
                                 const ParserMemory& memory) {
    const TSTree* const tree = best_tree(text, language, limits_of(text, is_cancelled, memory));
    return tree != nullptr && is_of_a_source(ts_tree_root_node(tree)) ? std::optional(SyntaxTree(tree)) : std::nullopt;
}

}  // namespace host::sources
