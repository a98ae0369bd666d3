#include "host/resolve/go_build.h"

#include "host/resolve/paths.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host::resolve {

namespace {

using std::string_view;

constexpr auto SYSTEMS =
    std::to_array<string_view>({"aix", "android", "darwin", "dragonfly", "freebsd", "hurd", "illumos", "ios", "js",
                                "linux", "nacl", "netbsd", "openbsd", "plan9", "solaris", "wasip1", "windows", "zos"});
constexpr auto PROCESSORS = std::to_array<string_view>(
    {"386",     "amd64",  "amd64p32", "arm",      "armbe",     "arm64",       "arm64be", "loong64",
     "mips",    "mipsle", "mips64",   "mips64le", "mips64p32", "mips64p32le", "ppc",     "ppc64",
     "ppc64le", "riscv",  "riscv64",  "s390",     "s390x",     "sparc",       "sparc64", "wasm"});
constexpr auto TAGS = std::to_array<string_view>({"amd64", "cgo", "gc", "linux", "unix"});

bool holds(string_view tag) {
    return std::ranges::find(TAGS, tag) != TAGS.end() || tag.starts_with("go1.");
}

// Cuts what stands behind the last underscore off a name. Returns it; nothing where there is none.
string_view cut_last_part(string_view& name) {
    const std::size_t underscore = name.rfind('_');
    if (underscore == string_view::npos) {
        return {};
    }
    const string_view part = name.substr(underscore + 1);
    name = name.substr(0, underscore);
    return part;
}

// `name_SYSTEM.go`, `name_PROCESSOR.go`, `name_SYSTEM_PROCESSOR.go`, each also with `_test` behind it.
bool is_name_built(string_view name) {
    string_view part = cut_last_part(name);
    if (part == "test") {
        part = cut_last_part(name);
    }
    bool is_built = true;
    if (std::ranges::find(PROCESSORS, part) != PROCESSORS.end()) {
        is_built = holds(part);
        part = cut_last_part(name);
    }
    return is_built && (std::ranges::find(SYSTEMS, part) == SYSTEMS.end() || holds(part));
}

// Evaluates a constraint: tags, `!`, `&&`, `||` and brackets. One that is none holds.
class Constraint {
  public:
    explicit Constraint(string_view text) : rest_(text) {}

    bool any(std::size_t depth = 0) {
        bool holds = all(depth);
        while (take("||")) {
            const bool other = all(depth);
            holds = holds || other;
        }
        return holds;
    }

  private:
    static constexpr std::size_t DEEPEST = 100;

    bool all(std::size_t depth) {
        bool holds = one(depth);
        while (take("&&")) {
            const bool other = one(depth);
            holds = holds && other;
        }
        return holds;
    }

    bool one(std::size_t depth) {
        bool is_wanted = true;
        while (take("!")) {
            is_wanted = !is_wanted;
        }
        if (take("(") && depth < DEEPEST) {
            const bool inner = any(depth + 1);
            take(")");
            return inner == is_wanted;
        }
        const string_view tag = rest_.substr(0, rest_.find_first_of(" \t!&|()"));
        rest_.remove_prefix(tag.size());
        return holds(tag) == is_wanted;
    }

    bool take(string_view token) {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size()));
        const bool is_next = rest_.starts_with(token);
        rest_.remove_prefix(is_next ? token.size() : 0);
        return is_next;
    }

    string_view rest_;
};

}  // namespace

bool is_built(string_view path, string_view constraint) {
    return is_name_built(stem(path)) && (constraint.empty() || Constraint(constraint).any());
}

}  // namespace host::resolve
