#include "host/index/sanitized_database.h"

#include "host/text/ascii.h"
#include "host/text/control_characters.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

std::string shown_name(std::string_view stored) {
    std::string shown = without_control_characters(stored);
    for (std::size_t tick = shown.find('`'); tick != std::string::npos; tick = shown.find('`', tick)) {
        shown.replace(tick, 1, REPLACEMENT_CHARACTER);
    }
    return shown;
}

// A text of a row as it is shown: the text itself, unless something in it must not be.
class Shown {
  public:
    template <class Change>
    Shown(std::string_view stored, Change change) : text_(stored) {
        const bool may_change = std::ranges::any_of(stored, [](char character) {
            const auto byte = static_cast<unsigned char>(character);
            return byte < 0x20 || byte >= 0x7F || byte == '`';
        });
        if (may_change) {
            changed_ = change(stored);
            text_ = changed_;
        }
    }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;
    ~Shown() = default;

    operator std::string_view() const { return text_; }

  private:
    std::string changed_;
    std::string_view text_;
};

class ShownName : public Shown {
  public:
    explicit ShownName(std::string_view stored) : Shown(stored, shown_name) {}
};

class ShownLines : public Shown {
  public:
    explicit ShownLines(std::string_view stored) : Shown(stored, lines_without_control_characters) {}
};

bool is_shown(std::string_view path) {
    return ShownName(path) == path;
}

bool is_word(std::string_view language) {
    return std::ranges::all_of(language, [](char character) {
        return is_part_of_name(character) || std::string_view(" +-#.").find(character) != std::string_view::npos;
    });
}

void give(const FileRow& stored, const OnRow<FileRow>& on_row) {
    const ShownName path(stored.path);
    FileRow row = stored;
    row.path = path;
    if (row.language && (!is_word(*row.language) || has_control_character(*row.language))) {
        row.language = std::nullopt;
    }
    on_row(row);
}

void give(const DeclarationRow& stored, const OnRow<DeclarationRow>& on_row) {
    const ShownName name(stored.name);
    const ShownName fqn(stored.fqn);
    const Shown kind(stored.kind, without_control_characters);
    DeclarationRow row = stored;
    row.name = name;
    row.fqn = fqn;
    row.kind = kind;
    on_row(row);
}

void give(const NameRow& stored, const OnRow<NameRow>& on_row) {
    const ShownName name(stored.name);
    on_row({stored.declaration, name, stored.uses});
}

void give(const DescriptionRow& stored, const OnRow<DescriptionRow>& on_row) {
    const ShownLines signature(stored.signature);
    const ShownLines documentation(stored.documentation);
    on_row({stored.declaration, signature, documentation});
}

void give(const ResolutionRow& stored, const OnRow<ResolutionRow>& on_row) {
    const ShownName name(stored.name);
    on_row({stored.id, name});
}

template <class Row>
OnRow<Row> shown(const OnRow<Row>& on_row) {
    return [&on_row](const Row& stored) { give(stored, on_row); };
}

}  // namespace

std::string SanitizedDatabase::noted(std::string_view key) {
    return lines_without_control_characters(stored_->noted(key));
}

// The path that is stored where readers see another one.
std::string SanitizedDatabase::stored_path(const std::string& shown) {
    if (shown.find(REPLACEMENT_CHARACTER) == std::string::npos) {
        return shown;
    }
    if (!stored_paths_) {
        stored_paths_.emplace();
        stored_->read_files_below("", [&](const FileRow& file) {
            if (!is_shown(file.path)) {
                stored_paths_->try_emplace(shown_name(file.path), file.path);
            }
        });
    }
    const auto found = stored_paths_->find(shown);
    return found == stored_paths_->end() ? shown : found->second;
}

void SanitizedDatabase::read_files_at(std::span<const std::string> paths, const OnRow<FileRow>& on_row) {
    std::vector<std::string> stored;
    for (const std::string& path : paths) {
        if (is_shown(path)) {
            stored.push_back(stored_path(path));
        }
    }
    stored_->read_files_at(stored, shown(on_row));
}

void SanitizedDatabase::read_files_below(std::string_view folder, const OnRow<FileRow>& on_row) {
    if (folder.find(REPLACEMENT_CHARACTER) == std::string_view::npos) {
        stored_->read_files_below(folder, shown(on_row));
        return;
    }
    const std::string beginning = std::string(folder) + "/";
    stored_->read_files_below("", shown<FileRow>([&](const FileRow& file) {
                                  if (file.path.starts_with(beginning)) {
                                      on_row(file);
                                  }
                              }));
}

void SanitizedDatabase::read_files(std::vector<RowId> ids, const OnRow<FileRow>& on_row) {
    stored_->read_files(std::move(ids), shown(on_row));
}

void SanitizedDatabase::read_declarations_in(std::vector<RowId> files, const OnRow<DeclarationRow>& on_row) {
    stored_->read_declarations_in(std::move(files), shown(on_row));
}

void SanitizedDatabase::read_declarations(std::vector<RowId> ids, const OnRow<DeclarationRow>& on_row) {
    stored_->read_declarations(std::move(ids), shown(on_row));
}

void SanitizedDatabase::read_declarations_named(std::string_view name, const OnRow<DeclarationRow>& on_row) {
    stored_->read_declarations_named(name, shown(on_row));
}

void SanitizedDatabase::read_names(std::string_view part, const OnRow<NameRow>& on_row) {
    stored_->read_names(part, shown(on_row));
}

void SanitizedDatabase::read_descriptions(std::vector<RowId> declarations, const OnRow<DescriptionRow>& on_row) {
    stored_->read_descriptions(std::move(declarations), shown(on_row));
}

void SanitizedDatabase::read_resolutions(const OnRow<ResolutionRow>& on_row) {
    stored_->read_resolutions(shown(on_row));
}

}  // namespace host
