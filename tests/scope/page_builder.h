// Makes pages for tests: a case is as short as its idea.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <string>
#include <vector>

namespace wiki::scope {

/// A declaration: `symbol(7, "Foo").kind("class").lines(1, 9)`. A public exported function of a.ts on lines 1 to 1
/// unless said otherwise.
class symbol {
  public:
    symbol(SymbolId id, const char* name) : made_{id, "a.ts", name, "function", true, 1, 1, name} {}

    symbol& in(const char* path) { return made_.path = path, *this; }
    symbol& kind(const char* kind) { return made_.kind = kind, *this; }
    symbol& fqn(const char* fqn) { return made_.fqn = fqn, *this; }
    symbol& lines(int start, int end) { return made_.start_line = start, made_.end_line = end, *this; }
    symbol& hidden() { return made_.is_export = false, *this; }
    operator ScopeSymbol() const { return made_; }

  private:
    ScopeSymbol made_;
};

/// References into the page: `from("x.ts").to(7, "a.ts").by("unique").kind("constant").times(3)`. One import of a
/// function unless said otherwise.
class from {
  public:
    explicit from(const Text& source) : made_{source, 0, "a.ts", "", "function", "import", 1} {}

    from& to(SymbolId id, const char* path = "a.ts", const char* name = "") {
        return made_.target_id = id, made_.target_path = path, made_.target_name = name, *this;
    }
    from& by(const char* resolution) { return made_.resolution = resolution, *this; }
    from& kind(const char* kind) { return made_.target_kind = kind, *this; }
    from& times(std::int64_t refs) { return made_.refs = refs, *this; }
    operator InboundReference() const { return made_; }

  private:
    InboundReference made_;
};

/// The parts of a page, all empty at first; `facts()` freezes them.
struct PageBuilder {
    std::vector<ScopeFile> files;
    std::vector<ScopeSymbol> symbols;
    std::vector<InboundReference> inbound;
    std::vector<OutboundReference> outbound;
    TextSet import_resolved_paths;
    TextSet test_sources;
    OrderedMap<Text, std::int64_t> line_counts;
    OrderedMap<Text, Text> summaries;
    TestImports test_imports;

    [[nodiscard]] ScopeFacts facts() const {
        return {files,        symbols,     inbound,   outbound,    import_resolved_paths,
                test_sources, line_counts, summaries, test_imports};
    }
};

}  // namespace wiki::scope
