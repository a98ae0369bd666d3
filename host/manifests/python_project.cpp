#include "host/manifests/manifest_readers.h"
#include "host/manifests/toml.h"
#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/split_lines.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace host::manifests {

namespace {

// "Foo_Bar[x] >= 1; extra" -> "foo-bar": the name that a requirement begins with, in the one spelling that all have.
std::string project_name(std::string_view requirement) {
    std::string name(trimmed(requirement));
    name.resize(std::min(name.size(), name.find_first_of(" \t[(<>=!~;@,")));
    for (char& each : name) {
        each = each == '_' || each == '.' ? '-' : lower(each);
    }
    return name;
}

void add_root(std::string_view root, resolve::Package& package) {
    if (!root.empty() && std::ranges::find(package.roots, root) == package.roots.end()) {
        package.roots.emplace_back(root);
    }
}

void add_requirement(std::string_view requirement, resolve::Package& package) {
    std::string name = project_name(requirement);
    if (!name.empty() && name != "python") {
        package.dependencies.insert(std::move(name));
    }
}

void add_requirements(const toml::node* list, resolve::Package& package) {
    const toml::array* const requirements = list == nullptr ? nullptr : list->as_array();
    for (const toml::node& each : requirements == nullptr ? toml::array() : *requirements) {
        add_requirement(each.value_or(std::string()), package);
    }
}

// Lists of requirements under names of the project's own.
void add_groups(const toml::node* groups, resolve::Package& package) {
    if (const toml::table* const table = groups == nullptr ? nullptr : groups->as_table()) {
        for (const auto& [name, list] : *table) {
            add_requirements(&list, package);
        }
    }
}

void add_poetry(const toml::table& manifest, resolve::Package& package) {
    const auto poetry = manifest["tool"]["poetry"];
    if (const toml::table* const table = poetry["dependencies"].as_table()) {
        for (const auto& [name, version] : *table) {
            add_requirement(name.str(), package);
        }
    }
    const toml::array* const packages = poetry["packages"].as_array();
    for (const toml::node& each : packages == nullptr ? toml::array() : *packages) {
        if (const toml::table* const table = each.as_table()) {
            add_root((*table)["from"].value_or(std::string()), package);
        }
    }
}

void add_setuptools(const toml::table& manifest, resolve::Package& package) {
    const auto setuptools = manifest["tool"]["setuptools"];
    add_root(setuptools["package-dir"][""].value_or(std::string()), package);
    const toml::array* const where = setuptools["packages"]["find"]["where"].as_array();
    for (const toml::node& each : where == nullptr ? toml::array() : *where) {
        add_root(each.value_or(std::string()), package);
    }
}

// The usual layout where modules are not beside the manifest.
void add_source_folder(const ManifestFiles& files, resolve::Package& package) {
    if (files.has_prefix(joined(package.folder, "src").value_or("") + "/")) {
        add_root("src", package);
    }
}

// The values of an INI file by "section.key", each of which may go on in indented lines.
std::map<std::string, std::vector<std::string>> values_of_ini(std::string_view text) {
    std::map<std::string, std::vector<std::string>> values;
    std::string section;
    std::vector<std::string>* value = nullptr;
    for (const std::string_view line : split_lines(text)) {
        const std::string_view content = trimmed(line);
        const std::size_t equals = content.find('=');
        if (content.empty() || content.front() == '#' || content.front() == ';') {
            continue;
        }
        if (line.front() == '[') {
            section = content.substr(1, content.find(']') - 1);
            value = nullptr;
        } else if (line.front() == ' ' || line.front() == '\t') {
            if (value != nullptr) {
                value->emplace_back(content);
            }
        } else if (equals != std::string_view::npos) {
            value = &values[section + "." + std::string(trimmed(content.substr(0, equals)))];
            value->emplace_back(trimmed(content.substr(equals + 1)));
        }
    }
    return values;
}

}  // namespace

void read_pyproject(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    const toml::table manifest = toml_at(files, path);
    const auto project = manifest["project"];
    package.name = project_name(project["name"].value_or(manifest["tool"]["poetry"]["name"].value_or(std::string())));
    add_requirements(project["dependencies"].node(), package);
    add_groups(project["optional-dependencies"].node(), package);
    add_groups(manifest["dependency-groups"].node(), package);
    add_poetry(manifest, package);
    add_setuptools(manifest, package);
    add_source_folder(files, package);
}

void read_setup_cfg(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    for (const auto& [key, lines] : values_of_ini(files.text(path).value_or(""))) {
        const bool is_requirement = key == "options.install_requires" || key.starts_with("options.extras_require.");
        for (const std::string& line : lines) {
            if (key == "metadata.name" && package.name.empty()) {
                package.name = project_name(line);
            } else if (is_requirement) {
                add_requirement(line, package);
            } else if (key == "options.packages.find.where") {
                add_root(line, package);
            } else if (key == "options.package_dir" && line.starts_with('=')) {
                add_root(trimmed(std::string_view(line).substr(1)), package);
            }
        }
    }
    add_source_folder(files, package);
}

// It is a program, which is not run.
void read_setup_py(const ManifestFiles& files, std::string_view /*path*/, resolve::Package& package) {
    add_source_folder(files, package);
}

}  // namespace host::manifests
