#include "host/html/use_graph.h"

#include "utils/saturating.h"
#include "workers/wiki/scope/neighbours.h"
#include "workers/wiki/scope/uses.h"

#include <algorithm>
#include <limits>
#include <map>
#include <unordered_set>
#include <utility>

namespace host::html {

namespace {

using models::Text;
using Side = GraphNode::Side;

// What a file is drawn as: itself or a folder.
struct Place {
    Side side = Side::USERS;
    std::string path;
    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Place&, const Place&) = default;
};

using References = std::map<std::pair<Place, Place>, std::int64_t>;  // from a file to a file

// Counts stop at the ends of 64 bits, as everywhere.
void add(std::int64_t& sum, std::int64_t count) {
    sum = utils::saturating_sum(sum, count);
}

void add_uses(const Page& page, References& references) {
    const models::TextSet of_page = page.facts.paths();
    for (const auto& [target, sources] : wiki::scope::file_users(page.facts)) {
        for (const auto& [source, count] : sources) {
            const Side side = of_page.contains(source) ? Side::PAGE : Side::USERS;
            add(references[{{side, std::string(source)}, {Side::PAGE, std::string(target)}}], count);
        }
    }
}

// Counts what `wiki::scope::neighbours` counts, file by file.
void add_dependencies(const Page& page, References& references) {
    std::unordered_set<storage::SymbolId> used;
    for (const auto& [target, count] : wiki::scope::neighbours(page.facts, std::numeric_limits<std::int64_t>::max())) {
        used.insert(target->id);
    }
    for (const storage::OutboundReference& reference : page.facts.outbound) {
        const wiki::scope::TargetKinds counted = wiki::scope::use_rules(reference.resolution).neighbour;
        if (used.contains(reference.target.id) && includes(counted, reference.target.kind)) {
            add(references[{{Side::PAGE, std::string(reference.source_path)},
                            {Side::USED, std::string(reference.target.path)}}],
                reference.refs);
        }
    }
}

std::string folder_of(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "" : path.substr(0, end);
}

// Folds files into folders until few enough are drawn.
class Folding {
  public:
    explicit Folding(const std::vector<Place>& files) {
        for (const Place& file : files) {
            drawn_[file].push_back(file);
        }
    }

    // Folds what stands on these sides, as far as the folders at `least_depth`.
    void fold(std::initializer_list<Side> sides, std::ptrdiff_t least_depth, std::size_t most) {
        std::ptrdiff_t depth = 0;
        for (const auto& [place, files] : drawn_) {
            depth = std::max(depth, depth_of(place));
        }
        for (; depth > least_depth && drawn_.size() > most; --depth) {
            fold_level(sides, depth, most);
        }
    }

    // Each drawn place with the files that it stands for.
    [[nodiscard]] const std::map<Place, std::vector<Place>>& drawn() const { return drawn_; }

  private:
    // How many folders a place lies in; the root none, as if it lay in less.
    static std::ptrdiff_t depth_of(const Place& place) {
        return place.path.empty() ? -1 : std::ranges::count(place.path, '/');
    }

    void fold_level(std::initializer_list<Side> sides, std::ptrdiff_t depth, std::size_t most) {
        std::map<Place, std::vector<Place>> folders;
        for (const auto& [place, files] : drawn_) {
            if (std::ranges::find(sides, place.side) != sides.end() && depth_of(place) == depth) {
                folders[{place.side, folder_of(place.path)}].push_back(place);
            }
        }
        std::vector<const std::pair<const Place, std::vector<Place>>*> largest_first;
        largest_first.reserve(folders.size());
        for (const auto& folder : folders) {
            largest_first.push_back(&folder);
        }
        std::ranges::stable_sort(largest_first, std::greater(),
                                 [](const auto* folder) { return folder->second.size(); });
        for (const auto* const folder : largest_first) {
            if (drawn_.size() <= most) {
                return;
            }
            std::vector<Place> files;
            for (const Place& place : folder->second) {
                std::ranges::move(drawn_.extract(place).mapped(), std::back_inserter(files));
            }
            std::ranges::move(files, std::back_inserter(drawn_[folder->first]));
        }
    }

    std::map<Place, std::vector<Place>> drawn_;
};

std::vector<Place> files_of(const Page& page, const References& references) {
    std::vector<Place> files;
    for (const storage::ScopeFile& file : page.facts.files) {
        files.push_back({Side::PAGE, std::string(file.path)});
    }
    for (const auto& [ends, count] : references) {
        files.push_back(ends.first);
        files.push_back(ends.second);
    }
    std::ranges::sort(files);
    files.erase(std::unique(files.begin(), files.end()), files.end());
    return files;
}

}  // namespace

UseGraph use_graph(const Page& page, std::size_t most) {
    References references;
    add_uses(page, references);
    add_dependencies(page, references);
    Folding folding(files_of(page, references));
    for (const std::ptrdiff_t least_depth : {0, -1}) {  // into the root only when nothing else helps
        folding.fold({Side::USERS, Side::USED}, least_depth, most);
        folding.fold({Side::PAGE}, least_depth, most);
    }
    UseGraph graph;
    std::map<Place, std::size_t> nodes;  // by file
    for (const auto& [place, files] : folding.drawn()) {
        for (const Place& file : files) {
            nodes[file] = graph.nodes.size();
        }
        const bool is_file = files.size() == 1;  // be it one that was folded to no use
        graph.nodes.push_back({.side = place.side,
                               .path = is_file ? files.front().path : place.path,
                               .files = is_file ? 0 : files.size()});
    }
    std::map<std::pair<std::size_t, std::size_t>, std::int64_t> arrows;
    for (const auto& [ends, count] : references) {
        const std::pair between(nodes.at(ends.first), nodes.at(ends.second));
        if (between.first != between.second) {
            add(arrows[between], count);
        }
    }
    for (const auto& [between, count] : arrows) {
        graph.arrows.push_back({.from = between.first, .to = between.second, .references = count});
    }
    return graph;
}

}  // namespace host::html
