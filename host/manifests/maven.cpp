#include "host/manifests/manifest_readers.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <string>

namespace host::manifests {

namespace {

// Takes out the first element of a name; returns what it holds.
std::string take_element(std::string& xml, std::string_view name) {
    const std::string open = "<" + std::string(name) + ">";
    const std::string close = "</" + std::string(name) + ">";
    const std::size_t begin = xml.find(open);
    const std::size_t end = begin == std::string::npos ? begin : xml.find(close, begin);
    if (end == std::string::npos) {
        return "";
    }
    std::string content = xml.substr(begin + open.size(), end - begin - open.size());
    xml.erase(begin, end + close.size() - begin);
    return content;
}

// What stands in an element right below the project comes before its lists of dependencies and plugins.
std::string head_of(const std::string& xml) {
    std::size_t end = xml.size();
    for (const std::string_view list : {"<dependencies>", "<dependencyManagement>", "<build>", "<profiles>"}) {
        end = std::min(end, xml.find(list));
    }
    return xml.substr(0, end);
}

}  // namespace

void read_pom(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    std::string xml = head_of(files.text(path).value_or(""));
    std::string parent = take_element(xml, "parent");
    const std::string own_group = take_element(xml, "groupId");
    const std::string artifact(trimmed(take_element(xml, "artifactId")));
    const std::string group(trimmed(own_group.empty() ? take_element(parent, "groupId") : own_group));
    if (!group.empty() && !artifact.empty()) {
        package.name = group + ":" + artifact;
    }
}

}  // namespace host::manifests
