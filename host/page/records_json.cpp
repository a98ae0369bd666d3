#include "host/page/records_json.h"

namespace host {

namespace {

using wiki::scope::Consumer;
using wiki::scope::FileUser;
using wiki::scope::UncountedReferences;
using wiki::scope::UsedDeclaration;
using wiki::scope::UsedName;

void write(JsonValue& json, const UsedDeclaration& used) {
    json.object([&] {
        write(json.member("declaration"), *used.declaration);
        json.member("references").value(used.references);
    });
}

void write(JsonValue& json, const FileUser& user) {
    json.object([&] {
        json.member("path").value(user.path);
        json.member("references").value(user.references);
    });
}

void write(JsonValue& json, const UsedName& used) {
    json.object([&] {
        json.member("name").value(used.name);
        json.member("references").value(used.references);
    });
}

void write(JsonValue& json, const UncountedReferences& uncounted) {
    json.object([&] {
        json.member("resolution").value(uncounted.resolution);
        json.member("references").value(uncounted.references);
    });
}

// A declaration that stands in a list for itself.
void write(JsonValue& json, const storage::ScopeSymbol* declaration) {
    write(json, *declaration);
}

void write(JsonValue& json, const UseSite& site) {
    json.object([&] {
        json.member("path").value(site.path);
        json.member("references").value(site.references);
        json.member("line").value(site.line);
    });
}

void write(JsonValue& json, const Consumer& consumer);

template <class Element>
void write(JsonValue& json, const models::Excerpt<Element>& excerpt) {
    json.object([&] {
        json.member("shown").array([&] {
            for (const Element& element : excerpt.shown) {
                write(json, element);
            }
        });
        json.member("total").value(excerpt.total);
    });
}

void write(JsonValue& json, const Consumer& consumer) {
    json.object([&] {
        json.member("path").value(consumer.path);
        json.member("references").value(consumer.references);
        write(json.member("names"), consumer.names);
    });
}

}  // namespace

using storage::InboundReference;
using storage::OutboundReference;
using storage::ScopeFile;
using storage::ScopeSymbol;

void write(JsonValue& json, std::int64_t number) {
    json.value(number);
}

void write(JsonValue& json, std::string_view text) {
    json.value(text);
}

void write(JsonValue& json, const ScopeFile& file) {
    json.object([&] {
        json.member("id").value(file.id);
        json.member("path").value(file.path);
        json.member("language").value(file.language);
    });
}

void write(JsonValue& json, const ScopeSymbol& symbol) {
    json.object([&] {
        json.member("id").value(symbol.id);
        json.member("path").value(symbol.path);
        json.member("name").value(symbol.name);
        json.member("kind").value(symbol.kind);
        json.member("is_export").value(symbol.is_export);
        json.member("start_line").value(symbol.start_line);
        json.member("end_line").value(symbol.end_line);
        json.member("fqn").value(symbol.fqn);
    });
}

void write(JsonValue& json, const InboundReference& reference) {
    json.object([&] {
        json.member("source_path").value(reference.source_path);
        json.member("target_id").value(reference.target_id);
        json.member("target_path").value(reference.target_path);
        json.member("target_name").value(reference.target_name);
        json.member("target_kind").value(reference.target_kind);
        json.member("resolution").value(reference.resolution);
        json.member("refs").value(reference.refs);
    });
}

void write(JsonValue& json, const OutboundReference& reference) {
    json.object([&] {
        json.member("source_path").value(reference.source_path);
        write(json.member("target"), reference.target);
        json.member("resolution").value(reference.resolution);
        json.member("refs").value(reference.refs);
    });
}

void write(JsonValue& json, const wiki::scope::FileCard& card) {
    json.object([&] {
        json.member("path").value(card.path);
        json.member("is_indexed").value(card.is_indexed);
        json.member("lines").value(card.lines);
        json.member("declarations").value(card.declarations);
        json.member("summary").value(card.summary);
        write(json.member("most_used"), card.most_used);
        json.member("is_used_inside_only").value(card.is_used_inside_only);
        write(json.member("users"), card.users);
        write(json.member("tests"), card.tests);
    });
}

void write(JsonValue& json, const wiki::scope::Consumers& consumers) {
    json.object([&] {
        write(json.member("files"), consumers.files);
        json.member("uncounted").array([&] {
            for (const UncountedReferences& uncounted : consumers.uncounted) {
                write(json, uncounted);
            }
        });
        json.member("uncounted_files").value(consumers.uncounted_files);
        write(json.member("unused"), consumers.unused);
        write(json.member("unresolved_languages"), consumers.unresolved_languages);
    });
}

void write(JsonValue& json, const wiki::scope::LineRange& range) {
    json.array([&] {
        json.value(range.first);
        json.value(range.last);
    });
}

void write(JsonValue& json, const wiki::scope::RankKey& key) {
    json.array([&] {
        json.value(key.is_internal);
        json.value(key.kind_group);
        json.value(key.is_private);
        json.value(key.outside);
        json.value(key.size);
        json.value(key.inside);
        json.value(key.start_line);
    });
}

void write(JsonValue& json, const wiki::scope::NamedPath& named) {
    json.array([&] {
        json.value(named.name);
        json.value(named.path);
    });
}

void write(JsonValue& json, const wiki::scope::Neighbour& neighbour) {
    json.object([&] {
        write(json.member("target"), *neighbour.target);
        json.member("refs").value(neighbour.refs);
    });
}

void write(JsonValue& json, const PageOptions& options) {
    json.object([&] {
        json.member("total").value(options.total);
        json.member("floor").value(options.floor);
        json.member("max_share").value(options.max_share);
        json.member("deep").value(options.deep);
        json.member("deep_per_file").value(options.deep_per_file);
        json.member("neighbours").value(options.neighbours);
    });
}

void write(JsonValue& json, const OutlinedDeclaration& declaration) {
    const ScopeSymbol& symbol = *declaration.symbol;
    json.object([&] {
        json.member("name").value(symbol.name);
        json.member("kind").value(symbol.kind);
        json.member("start_line").value(symbol.start_line);
        json.member("end_line").value(symbol.end_line);
        json.member("signature").value(declaration.signature);
    });
}

void write(JsonValue& json, const models::Excerpt<UseSite>& uses) {
    write<UseSite>(json, uses);
}

void write(JsonValue& json, const FileOutline& file) {
    json.object([&] {
        json.member("path").value(file.path);
        json.member("lines").value(file.lines);
        json.member("declarations").array([&] {
            for (const OutlinedDeclaration* const declaration : by_lines(file, file.declarations.size())) {
                write(json, *declaration);
            }
        });
    });
}

}  // namespace host
