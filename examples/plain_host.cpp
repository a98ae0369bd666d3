// The smallest host: an index of plain containers. It defines every collaborator that the component calls, grounds a
// page of one file and prints it.

#include "utils/path_filter.h"
#include "workers/wiki/file_summary.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/ranking.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace storage {

// What a page asks for, as rows. A real index answers with one query each.
class Database {
  public:
    struct Edge {
        models::Text source_path;
        SymbolId target_id;
        std::int64_t refs;
    };

    std::vector<ScopeFile> files{{1, "src/shape.ts", "typescript"}, {2, "src/app/main.ts", "typescript"}};
    std::vector<ScopeSymbol> symbols{{1, "src/shape.ts", "Shape", "class", true, 2, 4, "Shape"},
                                     {2, "src/shape.ts", "area", "method", true, 3, 3, "Shape.area"},
                                     {3, "src/app/main.ts", "main", "function", true, 1, 1, "main"}};
    std::vector<Edge> edges{{"src/app/main.ts", 1, 2}, {"src/shape.ts", 3, 1}};

    [[nodiscard]] const ScopeSymbol& symbol(SymbolId id) const {
        return *std::find_if(symbols.begin(), symbols.end(), [id](auto& symbol) { return symbol.id == id; });
    }

    // Whether `path` is one of the files with these ids.
    [[nodiscard]] bool holds(std::span<const FileId> ids, const models::Text& path) const {
        return std::any_of(files.begin(), files.end(), [&](const ScopeFile& file) {
            return file.path == path && std::find(ids.begin(), ids.end(), file.id) != ids.end();
        });
    }
};

std::vector<ScopeFile> scope_files(Database& db, std::span<const std::string> paths) {
    std::vector<ScopeFile> found;
    for (const std::string& path : paths) {
        std::copy_if(db.files.begin(), db.files.end(), std::back_inserter(found),
                     [&](const ScopeFile& file) { return file.path == path; });
    }
    return found;
}

std::vector<ScopeSymbol> scope_symbols(Database& db, std::span<const FileId> file_ids) {
    std::vector<ScopeSymbol> found;
    std::copy_if(db.symbols.begin(), db.symbols.end(), std::back_inserter(found),
                 [&](const ScopeSymbol& symbol) { return db.holds(file_ids, symbol.path); });
    return found;
}

std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids) {
    std::vector<InboundReference> found;
    for (const Database::Edge& edge : db.edges) {
        const ScopeSymbol& target = db.symbol(edge.target_id);
        if (db.holds(file_ids, target.path)) {
            found.push_back({edge.source_path, target.id, target.path, target.name, target.kind, "import", edge.refs});
        }
    }
    return found;
}

std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids) {
    std::vector<OutboundReference> found;
    for (const Database::Edge& edge : db.edges) {
        const ScopeSymbol& target = db.symbol(edge.target_id);
        if (db.holds(file_ids, edge.source_path) && target.path != edge.source_path) {
            found.push_back({edge.source_path, target, "import", edge.refs});
        }
    }
    return found;
}

std::vector<models::Text> import_resolved_languages(Database& /*db*/, std::span<const models::Text> languages) {
    return {languages.begin(), languages.end()};
}

}  // namespace storage

bool utils::is_test_path(std::string_view path) {
    return path.starts_with("test/");
}

std::string wiki::file_summary(std::span<const std::string> lines) {
    return !lines.empty() && lines[0].starts_with("// ") ? lines[0].substr(3) : "";
}

wiki::TestImports wiki::importing_tests(storage::Database& /*db*/, std::span<const storage::ScopeFile> /*files*/) {
    return {};
}

wiki::TestsReaching wiki::tests_reaching(const scope::ScopeFacts& /*facts*/) {
    return {};
}

namespace {

// The checkout of this host.
std::optional<std::vector<std::string>> read_lines(const models::Text& path) {
    if (path != "src/shape.ts") {
        return std::nullopt;
    }
    return {{"// Shapes and their areas.", "export class Shape {", "  area() { return 0; }", "}"}};
}

}  // namespace

int main() {
    using namespace wiki::scope;

    storage::Database db;
    const std::vector<std::string> paths{"src/shape.ts", "src/unknown.ts"};
    const std::vector<std::string> missing{"src/unknown.ts"};

    const ScopeFacts facts = load_scope_facts(db, paths, read_lines);
    const FanIn fan_in = production_fan_in(facts);

    std::cout << render_file_cards(facts, fan_in, "## Files", missing) << '\n'
              << render_consumers(facts, fan_in, "## Consumers") << "\n## Declarations\n\n";
    std::vector<NamedPath> candidates;
    for (const ScopeSymbol* declaration : select_with_quota(ranked_by_file(facts, fan_in), fan_in, 24, 2, 0.4)) {
        std::cout << "- `" << declaration->name << "`, " << declaration->kind << '\n';
        if (is_callable_or_type(declaration->kind)) {
            candidates.push_back({declaration->name, declaration->path});
        }
    }
    std::cout << "\n## In depth\n\n";
    for (const Text& name : pick_spread(candidates, 6, 2)) {
        std::cout << "- `" << name << "`\n";
    }
    std::cout << "\n## Dependencies\n\n";
    for (const auto& [target, references] : neighbours(facts, 12)) {
        std::cout << "- `" << target->fqn << "`, " << references << " references\n";
    }
    std::cout << "\n## Seeds\n\n";
    for (const auto& [path, lines] : file_seeds(facts, fan_in)) {
        std::cout << "- `" << path << ":L" << lines.first << "-L" << lines.last << "`\n";
    }
}
