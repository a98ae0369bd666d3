#include "host/changes/same_text.h"

#include "host/text/ascii.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::changes {

namespace {

// A shorter text without its name says too little of what a declaration is.
constexpr std::size_t FEWEST_LINES_OF_A_RENAMED_ONE = 3;

// Two declarations with equal keys are the same one at two places.
struct Key {
    Number file = NONE;
    Number type = NONE;
    std::string kind;
    std::string name;
    std::string text;

    auto operator<=>(const Key&) const = default;
};
using Keyed = std::map<Key, std::vector<Number>>;

struct Side {
    const IndexState& state;
    const std::vector<Number>& counterparts;
};

// Calls `take` with the public declarations without a counterpart whose text is known, and with that, line by line.
template <class Take>
void for_each_left(const Side& side, Take take) {
    Number file = NONE;
    std::optional<std::vector<std::string>> source;
    for (Number at = 0; at < side.state.declarations().size(); ++at) {
        const DeclarationState& declaration = side.state.declarations()[at];
        if (side.counterparts[at] != NONE || !declaration.is_public || declaration.name.empty()) {
            continue;
        }
        if (declaration.file != file) {
            file = declaration.file;
            source = side.state.source_of(file);
        }
        const auto lines = source ? static_cast<std::int64_t>(source->size()) : 0;
        if (1 <= declaration.first_line && declaration.first_line <= declaration.last_line &&
            declaration.last_line <= lines) {
            take(at, declaration,
                 std::span(*source).subspan(static_cast<std::size_t>(declaration.first_line - 1),
                                            static_cast<std::size_t>(declaration.last_line - declaration.first_line) +
                                                1));
        }
    }
}

// The text of a declaration with something else in the place of its name, wherever that stands as a word.
std::string without_name(std::span<const std::string> lines, std::string_view name) {
    const auto is_in_word = [](std::string_view line, std::size_t at) {
        return at < line.size() && is_part_of_name(line[at]);
    };
    std::string text;
    for (const std::string& line : lines) {
        std::size_t done = 0;
        for (std::size_t at = line.find(name); at != std::string::npos; at = line.find(name, at + name.size())) {
            const bool is_word = (at == 0 || !is_in_word(line, at - 1)) && !is_in_word(line, at + name.size());
            if (is_word) {
                text.append(line, done, at - done).push_back('\0');
                done = at + name.size();
            }
        }
        text.append(line, done).push_back('\n');
    }
    return text;
}

std::string joined(std::span<const std::string> lines) {
    std::string text;
    for (const std::string& line : lines) {
        text.append(line).push_back('\n');
    }
    return text;
}

// Declarations of one key on each side, and of no other.
void join_unique(const Keyed& olds, const Keyed& news, Counterparts& declarations) {
    for (const auto& [key, old_ones] : olds) {
        const auto found = news.find(key);
        if (found != news.end() && old_ones.size() == 1 && found->second.size() == 1) {
            declarations.join(old_ones.front(), found->second.front());
        }
    }
}

// Those that may have been renamed, by the file and the type that they stand in, as the new state numbers these.
Keyed renameable(const Side& side, const std::vector<Number>* files, const std::vector<Number>* declarations) {
    const auto in_new_state = [](const std::vector<Number>* counterparts, Number number) {
        return counterparts == nullptr || number == NONE ? number : (*counterparts)[number];
    };
    Keyed keyed;
    for_each_left(side, [&](Number at, const DeclarationState& declaration, std::span<const std::string> lines) {
        const Number file = in_new_state(files, declaration.file);
        const Number type = in_new_state(declarations, declaration.type);
        const bool has_place = file != NONE && (type == NONE) == (declaration.type == NONE);
        if (has_place && lines.size() >= FEWEST_LINES_OF_A_RENAMED_ONE) {
            keyed[{.file = file,
                   .type = type,
                   .kind = std::string(declaration.kind),
                   .name = "",
                   .text = without_name(lines, declaration.name)}]
                .push_back(at);
        }
    });
    return keyed;
}

// Those that may have been moved.
Keyed movable(const Side& side) {
    Keyed keyed;
    for_each_left(side, [&](Number at, const DeclarationState& declaration, std::span<const std::string> lines) {
        if (declaration.type == NONE) {
            keyed[{.kind = std::string(declaration.kind), .name = std::string(declaration.name), .text = joined(lines)}]
                .push_back(at);
        }
    });
    return keyed;
}

// The members of types that bear another qualified name by now.
void join_members(const IndexState& old_state, const IndexState& new_state, Counterparts& declarations) {
    std::map<Number, std::pair<std::vector<Named>, std::vector<Named>>> members;  // by the type of the old state
    for (Number at = 0; at < old_state.declarations().size(); ++at) {
        const DeclarationState& declaration = old_state.declarations()[at];
        if (declarations.of_old[at] == NONE && declaration.type != NONE &&
            declarations.of_old[declaration.type] != NONE) {
            members[declaration.type].first.push_back({declaration.name, at});
        }
    }
    for (Number at = 0; at < new_state.declarations().size(); ++at) {
        const DeclarationState& declaration = new_state.declarations()[at];
        const Number type = declaration.type == NONE ? NONE : declarations.of_new[declaration.type];
        if (declarations.of_new[at] == NONE && type != NONE) {
            if (const auto found = members.find(type); found != members.end()) {
                found->second.second.push_back({declaration.name, at});
            }
        }
    }
    for (auto& [type, both] : members) {
        join_by_name(old_state, std::move(both.first), new_state, std::move(both.second), declarations);
    }
}

}  // namespace

void join_same_texts(const IndexState& old_state, const IndexState& new_state, Pairing& pairing) {
    Counterparts& declarations = pairing.declarations;
    const Side before{old_state, declarations.of_old};
    const Side after{new_state, declarations.of_new};
    join_unique(movable(before), movable(after), declarations);
    join_members(old_state, new_state, declarations);
    join_unique(renameable(before, &pairing.files.of_old, &declarations.of_old), renameable(after, nullptr, nullptr),
                declarations);
    join_members(old_state, new_state, declarations);
}

}  // namespace host::changes
