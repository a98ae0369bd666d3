#include "embedded/scip/import.h"

#include "embedded/index.h"
#include "embedded/scip/declarations.h"
#include "embedded/scip/mapped_file.h"
#include "embedded/scip/reader.h"
#include "embedded/scip/replacement.h"
#include "embedded/scip/symbol.h"
#include "embedded/sqlite.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::scip {

namespace {

using Id = std::int64_t;  // of a row, from 1; 0 for none

// The declarations of one file, by symbol.
using DeclarationIds = std::unordered_map<std::string_view, Id>;

struct File {
    Id id = 0;
    std::string_view path;
    std::vector<const Document*> documents;
    DeclarationIds declarations;
};

// What the whole index knows of a global symbol.
struct Symbol {
    Id target = 0;              // the declaration that other files' references lead to
    bool is_described = false;  // whether the target's file describes the symbol
};

// All symbols seen so far. Strings are parsed when they are first seen, and only then.
class Symbols {
  public:
    // The symbol, valid until the next call; null for one that is local, empty, or does not parse.
    Symbol* find(std::string_view symbol) {
        if (symbol.empty() || is_local(symbol)) {
            return nullptr;
        }
        const auto [entry, is_new] = symbols_.try_emplace(symbol);
        if (is_new && parse_symbol(symbol)) {
            entry->second.emplace();
        }
        return entry->second ? &*entry->second : nullptr;
    }

    [[nodiscard]] std::int64_t unparsed() const {
        return std::count_if(symbols_.begin(), symbols_.end(), [](const auto& entry) { return !entry.second; });
    }

  private:
    std::unordered_map<std::string_view, std::optional<Symbol>> symbols_;
};

bool is_usable(std::string_view path) {
    const std::string framed = "/" + std::string(path) + "/";
    return !path.empty() && path.front() != '/' && path.find('\0') == std::string_view::npos &&
           framed.find("/../") == std::string::npos;
}

std::int64_t usable_documents(const Index& index) {
    return std::count_if(index.documents.begin(), index.documents.end(),
                         [](const Document& document) { return is_usable(document.path); });
}

// The files in path order, each with its documents in the order in which they came.
std::vector<File> files_of(const Index& index) {
    std::map<std::string_view, std::vector<const Document*>> documents_by_path;
    for (const Document& document : index.documents) {
        if (is_usable(document.path)) {
            documents_by_path[document.path].push_back(&document);
        }
    }
    std::vector<File> files;
    files.reserve(documents_by_path.size());
    for (auto& [path, documents] : documents_by_path) {
        files.push_back({static_cast<Id>(files.size()) + 1, path, std::move(documents), {}});
    }
    return files;
}

// The language that the first of the file's documents to state one states; empty when none does.
std::string_view stated_language(const File& file) {
    const auto stated = std::find_if(file.documents.begin(), file.documents.end(),
                                     [](const Document* document) { return !document->language.empty(); });
    return stated == file.documents.end() ? std::string_view() : (*stated)->language;
}

// What the documents of one file say of the symbols that it defines.
struct Definitions {
    struct Definition {
        std::string_view symbol;
        std::optional<Lines> lines;
    };
    std::vector<Definition> in_order;  // of the first definition of each symbol
    std::unordered_map<std::string_view, std::size_t> positions;
    std::unordered_map<std::string_view, Description> descriptions;

    void add(const Occurrence& definition) {
        const auto [position, is_new] = positions.try_emplace(definition.symbol, in_order.size());
        if (is_new) {
            in_order.push_back({definition.symbol, std::nullopt});
        }
        std::optional<Lines>& lines = in_order[position->second].lines;
        if (const std::optional<Lines> other = lines_of(definition); count_of(other) > count_of(lines)) {
            lines = other;
        }
    }

    [[nodiscard]] bool describes(std::string_view symbol) const { return descriptions.contains(symbol); }
};

// A row of a declaration before it has its number.
struct Row {
    std::string_view symbol;
    Lines lines;
    Declaration declaration;
};

// The declarations among a file's definitions, in the order of their rows.
std::vector<Row> rows_of(const Definitions& definitions) {
    std::vector<Row> rows;
    for (const Definitions::Definition& definition : definitions.in_order) {
        const auto description = definitions.descriptions.find(definition.symbol);
        std::optional<Declaration> declaration =
            declaration_of(parse_symbol(definition.symbol).value(),
                           description == definitions.descriptions.end() ? Description() : description->second);
        if (declaration) {
            rows.push_back({definition.symbol, definition.lines.value_or(Lines()), std::move(*declaration)});
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& left, const Row& right) { return left.lines.first < right.lines.first; });
    return rows;
}

// How far an import has come, and whoever wants to know.
class Steps {
  public:
    explicit Steps(const ImportProgress& progress) : progress_(progress) {}

    void expect(std::int64_t total) { total_ = std::max<std::int64_t>(total, 1); }

    void advance() {
        ++done_;
        tell();
    }

    void tell() const {
        if (progress_) {
            progress_(done_, total_);
        }
    }

  private:
    const ImportProgress& progress_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 1;
};

// One import: reads an index, and fills a database that has the schema already.
class Import {
  public:
    Import(const MappedFile& scip, const Index& index, Connection& out, Steps& steps)
        : scip_(scip), index_(index), out_(out), steps_(steps), files_(files_of(index)) {}

    ImportCounts run() {
        insert_meta();
        insert_files();
        insert_declarations();
        insert_edges();
        counts_.unparsed_symbols = symbols_.unparsed();
        counts_.unusable_documents = static_cast<std::int64_t>(index_.documents.size()) - usable_documents(index_);
        return counts_;
    }

  private:
    void insert_meta() {
        Statement insert(out_, "INSERT INTO meta(key, value) VALUES(?1, ?2)");
        const auto note = [&](std::string_view key, std::string_view value) {
            if (!value.empty()) {
                insert.bind(1, key);
                insert.bind(2, value);
                insert.run();
            }
        };
        const Metadata& metadata = index_.metadata;
        std::string tool(metadata.tool_name);
        if (!tool.empty() && !metadata.tool_version.empty()) {
            tool += ' ';
        }
        tool += metadata.tool_version;
        note("source", scip_.path());
        note("tool", tool);
        note("project_root", metadata.project_root);
    }

    void insert_files() {
        Statement insert(out_, "INSERT INTO files(id, path, language) VALUES(?1, ?2, ?3)");
        std::set<std::string> languages;
        for (const File& file : files_) {
            const std::string language = language_of(stated_language(file), file.path);
            insert.bind(1, file.id);
            insert.bind(2, file.path);
            if (language.empty()) {
                insert.bind_null(3);
            } else {
                insert.bind(3, language);
                languages.insert(language);
            }
            insert.run();
            ++counts_.files;
        }
        // An indexer that writes SCIP resolves imports as its language's compiler does.
        Statement insert_language(out_, "INSERT INTO languages(name, import_resolved) VALUES(?1, 1)");
        for (const std::string& language : languages) {
            insert_language.bind(1, language);
            insert_language.run();
        }
    }

    void insert_declarations() {
        Statement insert(out_, "INSERT INTO symbols(id, file_id, name, fqn, kind, is_export, start_line, end_line) "
                               "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
        for (File& file : files_) {
            const Definitions definitions = definitions_of(file);
            for (const Row& row : rows_of(definitions)) {
                const Id id = ++counts_.declarations;
                insert.bind(1, id);
                insert.bind(2, file.id);
                insert.bind(3, row.declaration.name);
                insert.bind(4, row.declaration.fqn);
                insert.bind(5, row.declaration.kind);
                insert.bind(6, std::int64_t{row.declaration.is_export ? 1 : 0});
                insert.bind(7, std::int64_t{row.lines.first});
                insert.bind(8, std::int64_t{row.lines.last});
                insert.run();
                file.declarations.emplace(row.symbol, id);
                declare(row.symbol, id, definitions.describes(row.symbol));
            }
        }
    }

    Definitions definitions_of(const File& file) {
        Definitions definitions;
        for_each_document(file, [&](const Document& document) {
            Repeated<Occurrence> occurrences = document.occurrences();
            while (const std::optional<Occurrence> occurrence = occurrences.next()) {
                if (occurrence->is_definition() && symbols_.find(occurrence->symbol) != nullptr) {
                    definitions.add(*occurrence);
                }
            }
            Repeated<SymbolInformation> symbols = document.symbols();
            while (const std::optional<SymbolInformation> information = symbols.next()) {
                if (symbols_.find(information->symbol) != nullptr) {
                    definitions.descriptions[information->symbol].add(*information);
                }
            }
        });
        return definitions;
    }

    // Makes the declaration the target of other files' references, unless one before it has the better claim.
    void declare(std::string_view name, Id declaration, bool is_described) {
        Symbol& symbol = *symbols_.find(name);
        if (symbol.target == 0 || (is_described && !symbol.is_described)) {
            symbol = {declaration, is_described};
        }
    }

    void insert_edges() {
        Statement insert(out_, "INSERT INTO edges(source_file_id, target_id, resolution, refs) VALUES(?1, ?2, ?3, ?4)");
        for (const File& file : files_) {
            for (const auto& [target, references] : references_of(file)) {
                insert.bind(1, file.id);
                insert.bind(2, target);
                insert.bind(3, references.resolution);
                insert.bind(4, references.count);
                insert.run();
                ++counts_.edges;
            }
        }
    }

    struct References {
        std::string_view resolution;
        std::int64_t count = 0;
    };

    // The references of a file by target. A target is in the file or not, so it has one resolution.
    std::map<Id, References> references_of(const File& file) {
        std::map<Id, References> references;
        for_each_document(file, [&](const Document& document) {
            Repeated<Occurrence> occurrences = document.occurrences();
            while (const std::optional<Occurrence> occurrence = occurrences.next()) {
                if (occurrence->is_definition()) {
                    continue;
                }
                if (const auto own = file.declarations.find(occurrence->symbol); own != file.declarations.end()) {
                    references.try_emplace(own->second, References{"local"}).first->second.count += 1;
                } else if (const Symbol* const symbol = symbols_.find(occurrence->symbol);
                           symbol != nullptr && symbol->target != 0) {
                    references.try_emplace(symbol->target, References{"import"}).first->second.count += 1;
                }
            }
        });
        return references;
    }

    template <class Visit>
    void for_each_document(const File& file, const Visit& visit) {
        for (const Document* const document : file.documents) {
            try {
                visit(*document);
            } catch (const protozero::exception&) {
                throw damaged(scip_, *document);
            }
            scip_.release(document->message);
            steps_.advance();
        }
    }

    const MappedFile& scip_;
    const Index& index_;
    Connection& out_;
    Steps& steps_;
    std::vector<File> files_;
    Symbols symbols_;
    ImportCounts counts_;
};

// Fills a new database and closes it.
ImportCounts write_index(const std::string& path, const MappedFile& scip, const Index& index, Steps& steps) {
    Connection out(path, Connection::Mode::CREATE);
    out.watch([&] { steps.tell(); });
    // Whatever goes wrong, the file is thrown away; it is made durable as a whole when it is complete.
    out.execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    Transaction transaction(out);
    create_schema(out);
    const ImportCounts counts = Import(scip, index, out, steps).run();
    create_indexes(out);
    transaction.commit();
    return counts;
}

std::int64_t count_rows(const Connection& index, const std::string& table) {
    Statement count(index, "SELECT count(*) FROM " + table);
    count.step();
    return count.integer(0);
}

// Whether what was written can be opened again and holds every row.
bool is_complete(const std::string& path, const ImportCounts& counts, const Steps& steps) {
    Connection index = open_index(path);
    index.watch([&] { steps.tell(); });
    return count_rows(index, "files") == counts.files && count_rows(index, "symbols") == counts.declarations &&
           count_rows(index, "edges") == counts.edges;
}

}  // namespace

ImportCounts import_scip(const std::string& scip_path, const std::string& index_path, const ImportProgress& progress) {
    require_replaceable(index_path);
    Steps steps(progress);
    const MappedFile scip(scip_path);
    const Index index = read_index(scip, [&] { steps.tell(); });
    steps.expect(2 * usable_documents(index));
    if (usable_documents(index) == 0 && holds_something(index_path)) {
        throw std::runtime_error(scip_path + ": names no source file, so " + index_path +
                                 " is kept; run the indexer on sources, or remove the index first");
    }
    Replacement replacement(index_path);
    ImportCounts counts;
    try {
        counts = write_index(replacement.partial_path(), scip, index, steps);
        if (!is_complete(replacement.partial_path(), counts, steps)) {
            throw cannot_replace(index_path, "rows are missing from what was written");
        }
    } catch (const SqliteError& error) {
        throw cannot_replace(index_path, error.reason());
    }
    replacement.sync();
    steps.tell();
    replacement.commit();
    return counts;
}

}  // namespace embedded::scip
