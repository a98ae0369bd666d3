#include "host/indexing/file_rows.h"

#include "host/files/file_language.h"
#include "host/indexing/edge_counts.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace host::indexing {

namespace {

// The number of lines that declarations, ordered by first line, cover together.
std::int64_t declared_lines(const std::vector<Declaration>& declarations) {
    std::int64_t lines = 0;
    std::int64_t last = 0;
    for (const Declaration& declaration : declarations) {
        const LineSpan& span = declaration.lines;
        lines += std::max<std::int64_t>(span.last - std::max<std::int64_t>(span.first - 1, last), 0);
        last = std::max<std::int64_t>(span.last, last);
    }
    return lines;
}

// The content hash as the index stores it: none when no source was read, 0 when it has changed since it was indexed.
std::optional<std::int64_t> content_hash_of(const ExtractedFile& file) {
    if (file.content_hash == 0) {
        return std::nullopt;
    }
    return file.has_moved ? 0 : file.content_hash;
}

// "src/a.ts" -> "a", "src/a/index.ts" -> "a"
std::string name_of_module(std::string_view path) {
    const auto last_segment = [](std::string_view text) { return text.substr(text.rfind('/') + 1); };
    const std::string_view file = last_segment(path);
    if (stands_for_folder(path) && file.size() < path.size()) {
        return std::string(last_segment(path.substr(0, path.size() - file.size() - 1)));
    }
    const std::string_view stem = stem_of(file);
    return std::string(stem.empty() ? file : stem);
}

Description description_of(const Declaration& declaration, TextSpool& spool) {
    std::vector<std::string> signatures{spool.read(declaration.signature)};
    for (const SpooledText& further : declaration.further_signatures) {
        signatures.push_back(spool.read(further));
    }
    std::string text;
    for (auto signature = signatures.begin(); signature != signatures.end(); ++signature) {
        const bool is_again = std::find(signatures.begin(), signature, *signature) != signature;
        if (!signature->empty() && !is_again) {
            text.append(text.empty() ? "" : "\n").append(*signature);
        }
    }
    return {std::move(text), spool.read(declaration.documentation)};
}

}  // namespace

RowIds::RowIds(const Extraction& extraction, std::vector<bool> is_module, RowId room)
    : RowIds(extraction, std::move(is_module), std::vector<RowId>()) {
    RowId next = 1;
    for (const std::int64_t declarations : declarations_) {
        first_.push_back(next);
        next += declarations + room;
    }
    first_.push_back(next);
}

RowIds::RowIds(const Extraction& extraction, std::vector<bool> is_module, std::vector<RowId> first)
    : is_module_(std::move(is_module)), first_(std::move(first)) {
    for (std::uint32_t file = 0; file < extraction.files.size(); ++file) {
        declarations_.push_back(std::ssize(extraction.files[file].declared.declarations) + (is_module_[file] ? 1 : 0));
    }
}

std::uint32_t RowIds::file_of(RowId declaration) const {
    return static_cast<std::uint32_t>(std::ranges::upper_bound(first_, declaration) - first_.begin() - 1);
}

FileRow file_row(const Extraction& extraction, std::uint32_t file, const RowIds& ids) {
    const ExtractedFile& extracted = extraction.files[file];
    return {.id = RowIds::of_file(file),
            .path = extracted.path,
            .language = extracted.language,
            .content_hash = content_hash_of(extracted),
            .declarations = ids.declarations(file),
            .declared_lines = declared_lines(extracted.declared.declarations)};
}

std::vector<EdgeRow> edge_rows(const FileReferences& references, std::uint32_t file, const RowIds& ids) {
    const RowId source = RowIds::of_file(file);
    std::vector<EdgeRow> rows;
    const auto add = [&](RowId target, Resolution resolution, const Occurrences& tokens) {
        rows.push_back({source, target, id_of(resolution), tokens.count, tokens.first_line});
    };
    for (const Edge& edge : references.edges) {
        add(ids.of(edge.target), edge.resolution, edge.references);
    }
    for (const auto& [module, tokens] : references.modules) {
        add(ids.of_module(module), Resolution::IMPORT, tokens);
    }
    std::ranges::stable_sort(rows, {}, &EdgeRow::target);
    return rows;
}

std::vector<DeclarationTexts> texts_of(const Extraction& extraction, std::uint32_t file, const RowIds& ids,
                                       TextSpool& spool) {
    const ExtractedFile& extracted = extraction.files[file];
    std::vector<DeclarationTexts> texts;
    if (ids.is_module(file)) {
        std::string fqn = extraction.symbols->name_of(extracted.declared.modules.front(), file).fqn;
        texts.push_back({{name_of_module(extracted.path), std::move(fqn)}, {}});
    }
    for (const Declaration& declaration : extracted.declared.declarations) {
        texts.push_back({extraction.symbols->name_of(declaration.symbol, file), description_of(declaration, spool)});
    }
    return texts;
}

std::vector<DeclarationRow> declaration_rows(const Extraction& extraction, const References& references,
                                             std::uint32_t file, const RowIds& ids,
                                             const std::vector<DeclarationTexts>& texts) {
    const FileDeclarations& declared = extraction.files[file].declared;
    std::vector<DeclarationRow> rows;
    const auto add = [&](RowId id, std::string_view kind, bool is_export, const LineSpan& lines) {
        const DeclarationName& name = texts[rows.size()].name;
        rows.push_back({.id = id,
                        .file = RowIds::of_file(file),
                        .name = name.name,
                        .fqn = name.fqn,
                        .kind = kind,
                        .is_export = is_export,
                        .first_line = lines.first,
                        .last_line = lines.last});
    };
    if (ids.is_module(file)) {
        add(ids.of_module(file), MODULE_KIND, true, {1, std::max(declared.line_count, 1)});
    }
    for (std::uint32_t at = 0; at < declared.declarations.size(); ++at) {
        const DeclarationPlace place{file, at};
        const Declaration& declaration = declared.declarations[at];
        add(ids.of(place), declaration.kind, declaration.is_public && references.lead_to(place), declaration.lines);
    }
    return rows;
}

}  // namespace host::indexing
