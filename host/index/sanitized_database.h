// An index whose texts are safe to print, whoever made it.
#pragma once

#include "host/index/database.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// Another index with U+FFFD in the place of what would take over a page or a terminal: control characters, and in
/// paths and names backticks, since pages print these between backticks. Signatures, documentation and notes keep their
/// lines. A language that is no word is unknown.
///
/// A file is asked for by the path that its row shows; of several that show one path it is the first. Files below a
/// folder come in the order of the paths that are stored.
class SanitizedDatabase : public storage::Database {
  public:
    explicit SanitizedDatabase(std::unique_ptr<storage::Database> stored) : stored_(std::move(stored)) {}

    [[nodiscard]] std::string name() const override { return stored_->name(); }
    [[nodiscard]] IndexOrigin origin() override { return stored_->origin(); }
    [[nodiscard]] std::string noted(std::string_view key) override;
    void check() override { stored_->check(); }

    [[nodiscard]] std::int64_t count_files(std::int64_t most) override { return stored_->count_files(most); }
    void read_files_at(std::span<const std::string> paths, const OnRow<FileRow>& on_row) override;
    void read_files_below(std::string_view folder, const OnRow<FileRow>& on_row) override;
    void read_files(std::vector<RowId> ids, const OnRow<FileRow>& on_row) override;

    void read_declarations_in(std::vector<RowId> files, const OnRow<DeclarationRow>& on_row) override;
    void read_declarations(std::vector<RowId> ids, const OnRow<DeclarationRow>& on_row) override;
    void read_declarations_named(std::string_view name, const OnRow<DeclarationRow>& on_row) override;
    void read_names(std::string_view part, const OnRow<NameRow>& on_row) override;
    void read_descriptions(std::vector<RowId> declarations, const OnRow<DescriptionRow>& on_row) override;

    void read_resolutions(const OnRow<ResolutionRow>& on_row) override;
    void read_resolved_languages(std::span<const models::Text> names, const OnRow<std::string_view>& on_row) override {
        stored_->read_resolved_languages(names, on_row);
    }

    void read_edges_into(std::vector<RowId> declarations, const OnRow<EdgeRow>& on_row) override {
        stored_->read_edges_into(std::move(declarations), on_row);
    }
    void read_edges_out_of(std::vector<RowId> files, const OnRow<EdgeRow>& on_row) override {
        stored_->read_edges_out_of(std::move(files), on_row);
    }

  private:
    [[nodiscard]] std::string stored_path(const std::string& shown);

    std::unique_ptr<storage::Database> stored_;
    std::optional<std::map<std::string, std::string>> stored_paths_;  // of files that show another path, by that
};

}  // namespace host
