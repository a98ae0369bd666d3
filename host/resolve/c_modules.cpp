// C and C++ have no modules: a file sees what it includes, and what that includes.
#include "host/resolve/c_includes.h"
#include "host/resolve/c_systems.h"
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host::resolve {

namespace {

class CModules : public ModuleRules {
  public:
    explicit CModules(Catalog& catalog)
        : catalog_(catalog), files_(catalog.repository()), program_(catalog.module("c:")), built_(catalog.files()),
          left_out_(catalog.files()), includers_(catalog.files()), reached_(catalog.files()) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "c" || catalog.file(file).language == "cpp") {
                catalog.set_module(file, program_);
                by_name_[file_name(catalog.file(file).path)].push_back(file);
            }
        }
        FilesOfFiles always(catalog.files());
        std::vector<FileId> of_other_systems;
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.module_of(file) == program_) {
                add_includes(file, always, of_other_systems);
            }
        }
        leave_out(std::move(of_other_systems), always);
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        if (is_include(catalog_.syntax(from), import)) {
            return {.is_foreign = !find_header(from, import)};
        }
        Found found{.is_foreign = false, .modules = {program_}, .path = {}};
        for (std::string_view rest = catalog_.syntax(from).name(import.module); !rest.empty();) {
            const std::size_t end = rest.find("::");
            if (end != 0) {
                found.path.emplace_back(rest.substr(0, end));
            }
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 2);
        }
        return found;
    }

    [[nodiscard]] Container root(FileId /*file*/) const override { return program_; }

    [[nodiscard]] bool sees(FileId from, FileId of) const override {
        return std::ranges::binary_search(reached_from(from).files, of);
    }

    [[nodiscard]] bool sees_only_elsewhere(FileId from, FileId of) const override {
        return std::ranges::binary_search(reached_from(from).elsewhere, of);
    }

    [[nodiscard]] bool sees_where_included(FileId from, FileId of) const override {
        constexpr std::size_t MOST = 32;  // a header of more stands on its own
        const std::vector<FileId>& includers = includers_[from];
        return !includers.empty() && includers.size() <= MOST &&
               std::ranges::all_of(includers, [&](FileId each) { return each == of || sees(each, of); });
    }

    [[nodiscard]] bool is_included(FileId file) const override { return !includers_[file].empty(); }

    [[nodiscard]] bool is_open(FileId file) const override { return reached_from(file).is_open; }

  private:
    // The header of an #include: beside the file, else the one whose path ends so; none where several do, unless one is
    // nearest.
    [[nodiscard]] std::optional<FileId> find_header(FileId from, const syntax::Import& import) const {
        const std::string_view name = catalog_.syntax(from).name(import.module);
        const std::string& path = catalog_.file(from).path;
        if (!import.is_system) {
            if (const std::optional<FileId> beside = files_.find(joined(folder_of(path), name).value_or(""))) {
                return beside;
            }
        }
        const auto candidates = by_name_.find(file_name(name));
        if (candidates == by_name_.end()) {
            return std::nullopt;
        }
        std::optional<FileId> best;
        std::size_t most_common = 0;
        bool is_one = false;
        for (const FileId file : candidates->second) {
            const std::string& other = catalog_.file(file).path;
            const bool is_longer = other.size() > name.size() && other[other.size() - name.size() - 1] == '/';
            if (!other.ends_with(name) || !(is_longer || other.size() == name.size())) {
                continue;
            }
            const auto common = static_cast<std::size_t>(std::ranges::mismatch(path, other).in1 - path.begin());
            if (!best || common > most_common) {
                best = file;
                most_common = common;
                is_one = true;
            } else if (common == most_common) {
                is_one = false;
            }
        }
        return is_one ? best : std::nullopt;
    }

    // Whether the folder of a header, which neither the include nor the path of the file spells out, is for another
    // system: a build for this one makes such a header, or has it elsewhere.
    [[nodiscard]] bool is_picked_for_other_system(FileId from, const syntax::Import& import, FileId header) const {
        const std::string& path = catalog_.file(from).path;
        std::string_view folders = catalog_.file(header).path;
        folders.remove_suffix(std::min(folders.size(), catalog_.syntax(from).name(import.module).size()));
        const auto common = static_cast<std::size_t>(std::ranges::mismatch(path, folders).in2 - folders.begin());
        folders.remove_prefix(folders.substr(0, common).rfind('/') + 1);
        return is_in_folder_of_other_system(folders);
    }

    using FilesOfFiles = std::vector<std::vector<FileId>>;

    // `always` is of each header what always includes it.
    void add_includes(FileId file, FilesOfFiles& always, std::vector<FileId>& of_other_systems) {
        for (const syntax::Import& import : catalog_.syntax(file).imports) {
            if (!is_include(catalog_.syntax(file), import)) {
                continue;
            }
            const std::optional<FileId> header = find_header(file, import);
            const bool is_always = import.built == syntax::Built::ALWAYS;
            if (header) {
                const bool is_left_out =
                    import.built == syntax::Built::NEVER || is_picked_for_other_system(file, import, *header);
                (is_left_out ? left_out_ : built_)[file].push_back(*header);
                includers_[*header].push_back(file);
                always[*header].insert(always[*header].end(), is_always ? 1 : 0, file);
            } else if (is_always && is_header_of_other_system(catalog_.syntax(file).name(import.module))) {
                of_other_systems.push_back(file);
            } else if (!import.is_system) {
                open_.insert(file);
            }
        }
    }

    // What always includes a file that no build takes is left out as well.
    void leave_out(std::vector<FileId> waiting, const FilesOfFiles& built_with) {
        while (!waiting.empty()) {
            const FileId next = waiting.back();
            waiting.pop_back();
            if (!catalog_.is_left_out(next)) {
                catalog_.leave_out(next);
                waiting.insert(waiting.end(), built_with[next].begin(), built_with[next].end());
            }
        }
    }

    // What a file includes, at any depth.
    struct Reached {
        std::once_flag once;
        std::vector<FileId> files;      // ascending
        std::vector<FileId> elsewhere;  // of these what no build takes in; ascending
        bool is_open = false;           // whether a header is not found, of the file or of one of these
    };

    // Found when it is first asked for: by the thread that resolves the file, mostly.
    [[nodiscard]] const Reached& reached_from(FileId file) const {
        Reached& reached = reached_[file];
        std::call_once(reached.once, [&] { find_reached(file, reached); });
        return reached;
    }

    void find_reached(FileId file, Reached& reached) const {
        std::vector<bool> is_known(built_.size(), false);
        const auto follow = [&](std::vector<FileId> waiting, bool is_built) {
            while (!waiting.empty()) {
                const FileId next = waiting.back();
                waiting.pop_back();
                if (is_known[next]) {
                    continue;
                }
                is_known[next] = true;
                reached.files.push_back(next);
                waiting.insert(waiting.end(), built_[next].begin(), built_[next].end());
                if (!is_built) {
                    waiting.insert(waiting.end(), left_out_[next].begin(), left_out_[next].end());
                }
            }
        };
        follow(built_[file], true);
        const std::size_t built = reached.files.size();
        std::vector<FileId> elsewhere = left_out_[file];
        for (std::size_t at = 0; at < built; ++at) {
            const std::vector<FileId>& left_out = left_out_[reached.files[at]];
            elsewhere.insert(elsewhere.end(), left_out.begin(), left_out.end());
        }
        follow(std::move(elsewhere), false);
        reached.elsewhere.assign(reached.files.begin() + static_cast<std::ptrdiff_t>(built), reached.files.end());
        reached.is_open = open_.contains(file) ||
                          std::ranges::any_of(reached.files, [&](FileId each) { return open_.contains(each); });
        reached.files.shrink_to_fit();
        std::ranges::sort(reached.files);
        std::ranges::sort(reached.elsewhere);
    }

    Catalog& catalog_;
    FilesByPath files_;
    Container program_;
    std::unordered_map<std::string_view, std::vector<FileId>> by_name_;
    FilesOfFiles built_;                    // by file: what it includes itself, where a build may take that
    FilesOfFiles left_out_;                 // and where none does
    FilesOfFiles includers_;                // by header
    std::unordered_set<FileId> open_;       // with an #include of a header that is not found
    mutable std::vector<Reached> reached_;  // by file
};

}  // namespace

std::unique_ptr<ModuleRules> c_modules(Catalog& catalog) {
    return std::make_unique<CModules>(catalog);
}

}  // namespace host::resolve
