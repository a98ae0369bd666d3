#include "host/sources/mentions.h"

#include "host/text/ascii.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;

constexpr std::size_t FILE_ITSELF = 0;

struct Scope {
    Bytes bytes;
    bool is_class = false;
    std::size_t outer = FILE_ITSELF;  // its place
};

// The scopes of a text, of which any two are nested or apart; the first is the file.
class Scopes {
  public:
    explicit Scopes(std::vector<CapturedScope> captured) {
        std::ranges::sort(captured, {}, [](const CapturedScope& scope) {
            return std::pair(scope.bytes.begin, -std::int64_t{scope.bytes.end});
        });
        scopes_.push_back({{0, 0xFFFF'FFFF}});
        std::size_t innermost = FILE_ITSELF;
        for (const CapturedScope& scope : captured) {
            while (innermost != FILE_ITSELF && scopes_[innermost].bytes.end <= scope.bytes.begin) {
                innermost = scopes_[innermost].outer;
            }
            scopes_.push_back({scope.bytes, scope.is_class, innermost});
            innermost = scopes_.size() - 1;
        }
    }

    // The place of the innermost scope around an offset.
    [[nodiscard]] std::size_t around(std::uint32_t offset) const {
        const auto behind = std::ranges::upper_bound(scopes_.begin() + 1, scopes_.end(), offset, {},
                                                     [](const Scope& scope) { return scope.bytes.begin; });
        auto place = static_cast<std::size_t>(behind - scopes_.begin()) - 1;
        while (place != FILE_ITSELF && scopes_[place].bytes.end <= offset) {
            place = scopes_[place].outer;
        }
        return place;
    }

    // Calls `visit` with the places of the scopes in which a name is looked up that stands in one, from the inside out,
    // until it returns true. What a class binds is no name for the functions in it.
    void for_each_around(std::size_t place, const auto& visit) const {
        for (bool is_in_function = false;; place = scopes_[place].outer) {
            const bool is_hidden = scopes_[place].is_class && is_in_function;
            if ((!is_hidden && visit(place)) || place == FILE_ITSELF) {
                return;
            }
            is_in_function = is_in_function || !scopes_[place].is_class;
        }
    }

  private:
    std::vector<Scope> scopes_;
};

// The names behind a name, with dots before each but the first: ".a.b(c)" -> "a.b". Nobody's packages nest deeper than
// what is looked at.
string_view members_behind(string_view text) {
    constexpr std::size_t DEEPEST = 4;
    std::size_t end = 0;
    for (std::size_t depth = 0; depth < DEEPEST && text.substr(end).starts_with('.'); ++depth) {
        const string_view rest = text.substr(end + 1);
        const auto* const name_end = std::ranges::find_if_not(rest, is_part_of_name);
        if (name_end == rest.begin()) {
            break;
        }
        end += 1 + static_cast<std::size_t>(name_end - rest.begin());
    }
    return end == 0 ? string_view() : text.substr(1, end - 1);
}

}  // namespace

void count_mentions(string_view text, Captures& captures) {
    const auto part = [&](Bytes bytes) { return text.substr(bytes.begin, bytes.end - bytes.begin); };
    const Scopes scopes(std::move(captures.scopes));
    std::map<std::pair<std::size_t, string_view>, Link*> meanings;  // by scope and name; null for anything but one link
    std::set<string_view> names;
    for (auto& [link, name] : captures.links) {
        const std::size_t scope = scopes.around(name.begin);
        link.is_exported = link.is_exported && scope == FILE_ITSELF;
        if (!link.name.empty()) {
            const auto [meaning, is_new] = meanings.try_emplace({scope, part(name)}, &link);
            const bool is_same = is_new || (meaning->second != nullptr && meaning->second->module == link.module &&
                                            meaning->second->original == link.original);
            meaning->second = is_same ? meaning->second : nullptr;
            names.insert(part(name));
        }
    }
    for (const Bytes& bound : captures.bound) {
        if (names.contains(part(bound))) {
            meanings[{scopes.around(bound.begin), part(bound)}] = nullptr;
        }
    }
    for (const Bytes& mention : captures.mentions) {
        const string_view name = part(mention);
        if (names.contains(name) && !captures.unmentioned.contains(mention.begin)) {
            scopes.for_each_around(scopes.around(mention.begin), [&](std::size_t scope) {
                const auto meaning = meanings.find({scope, name});
                if (meaning != meanings.end() && meaning->second != nullptr) {
                    ++meaning->second->mentions[std::string(members_behind(text.substr(mention.end)))];
                }
                return meaning != meanings.end();
            });
        }
    }
}

}  // namespace host::sources
