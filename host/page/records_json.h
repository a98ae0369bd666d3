// The records of a page as JSON values: objects whose keys are named as the fields.
#pragma once

#include "host/page/outline.h"
#include "host/page/page.h"
#include "host/page/use_sites.h"
#include "host/text/json_writer.h"
#include "models/excerpt.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/file_cards.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host {

void write(JsonValue& json, std::int64_t number);
void write(JsonValue& json, std::string_view text);
void write(JsonValue& json, const storage::ScopeFile& file);
void write(JsonValue& json, const storage::ScopeSymbol& symbol);
void write(JsonValue& json, const storage::InboundReference& reference);
void write(JsonValue& json, const storage::OutboundReference& reference);
void write(JsonValue& json, const wiki::scope::Neighbour& neighbour);
void write(JsonValue& json, const PageOptions& options);
void write(JsonValue& json, const OutlinedDeclaration& declaration);
/// The declarations stand in the order of their lines.
void write(JsonValue& json, const FileOutline& file);

void write(JsonValue& json, const models::Excerpt<UseSite>& uses);

void write(JsonValue& json, const wiki::scope::FileCard& card);
void write(JsonValue& json, const wiki::scope::Consumers& consumers);

/// As an array: first line and last.
void write(JsonValue& json, const wiki::scope::LineRange& range);
/// As an array of all seven elements.
void write(JsonValue& json, const wiki::scope::RankKey& key);
/// As an array: name and path.
void write(JsonValue& json, const wiki::scope::NamedPath& named);

template <class Element>
void write(JsonValue& json, const std::vector<Element>& elements) {
    json.array([&] {
        for (const Element& element : elements) {
            write(json, element);
        }
    });
}

}  // namespace host
