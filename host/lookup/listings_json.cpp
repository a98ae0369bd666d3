#include "host/lookup/listings_json.h"

#include "host/indexing/report_json.h"
#include "host/text/json_writer.h"

#include <optional>
#include <ostream>

namespace host {

void write_json(std::ostream& out, std::span<const ListedFile> files) {
    JsonWriter json(out);
    json.document([&] {
        json.array("files", [&] {
            for (const ListedFile& file : files) {
                JsonValue& listed = json.element();
                listed.object([&] {
                    listed.member("path").value(file.path);
                    listed.member("language")
                        .value(file.language.empty() ? std::nullopt : std::optional(file.language));
                    listed.member("declarations").value(file.declarations);
                    listed.member("declared_lines").value(file.declared_lines);
                    listed.member("is_test").value(file.is_test);
                });
            }
        });
    });
}

void write_json(std::ostream& out, const FoundDeclarations& found) {
    JsonWriter json(out);
    json.document([&] {
        json.array("declarations", [&] {
            for (const FoundDeclaration& declaration : found.best) {
                JsonValue& listed = json.element();
                listed.object([&] {
                    listed.member("match").value(name_of(declaration.match));
                    listed.member("name").value(declaration.name);
                    listed.member("fqn").value(declaration.fqn);
                    listed.member("kind").value(declaration.kind);
                    listed.member("path").value(declaration.path);
                    listed.member("start_line").value(declaration.first_line);
                    listed.member("end_line").value(declaration.last_line);
                    listed.member("uses").value(declaration.uses);
                });
            }
        });
        json.member("count").value(found.count);
    });
}

void write_json(std::ostream& out, const IndexStats& stats) {
    JsonWriter json(out);
    json.document([&] {
        json.member("index").value(stats.index);
        json.member("bytes").value(stats.origin.bytes);
        json.member("made").value(stats.origin.made);
        json.member("checksums").value(stats.origin.has_checksums);
        json.member("checked").value(stats.is_checked);
        json.member("report").raw(to_json(stats.report));
    });
}

}  // namespace host
