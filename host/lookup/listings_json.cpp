#include "host/lookup/listings_json.h"

#include "host/indexing/report_json.h"
#include "host/text/json_writer.h"

#include <ostream>

namespace host {

void write_json(std::ostream& out, std::span<const ListedFile> files) {
    JsonWriter json(out);
    json.document([&] {
        json.array("files", [&] {
            for (const ListedFile& file : files) {
                json.element({{"path", file.path},
                              {"language", file.language.empty() ? Json() : Json(file.language)},
                              {"declarations", file.declarations},
                              {"declared_lines", file.declared_lines},
                              {"is_test", file.is_test}});
            }
        });
    });
    out << '\n';
}

void write_json(std::ostream& out, const FoundDeclarations& found) {
    JsonWriter json(out);
    json.document([&] {
        json.array("declarations", [&] {
            for (const FoundDeclaration& declaration : found.best) {
                json.element({{"match", name_of(declaration.match)},
                              {"name", declaration.name},
                              {"fqn", declaration.fqn},
                              {"kind", declaration.kind},
                              {"path", declaration.path},
                              {"start_line", declaration.first_line},
                              {"end_line", declaration.last_line},
                              {"uses", declaration.uses}});
            }
        });
        json.member("count", found.count);
    });
    out << '\n';
}

void write_json(std::ostream& out, const IndexStats& stats) {
    JsonWriter json(out);
    json.document([&] {
        json.member("index", stats.index);
        json.member("bytes", stats.origin.bytes);
        json.member("made", stats.origin.made);
        json.member("checksums", stats.origin.has_checksums);
        json.member("checked", stats.is_checked);
        json.member("report", Json::parse(written(stats.report)));
    });
    out << '\n';
}

}  // namespace host
