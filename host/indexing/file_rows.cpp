#include "host/indexing/file_rows.h"

#include "host/indexing/edge_counts.h"

#include <algorithm>
#include <optional>
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

}  // namespace

RowIds::RowIds(const Extraction& extraction, std::vector<bool> is_module) : is_module_(std::move(is_module)) {
    RowId next = 1;
    for (std::uint32_t file = 0; file < extraction.files.size(); ++file) {
        first_.push_back(next);
        next += static_cast<RowId>(extraction.files[file].declared.declarations.size()) + (is_module_[file] ? 1 : 0);
    }
    first_.push_back(next);
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

}  // namespace host::indexing
