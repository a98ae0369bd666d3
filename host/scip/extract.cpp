#include "host/scip/extract.h"

#include "host/scip/callable_types.h"
#include "host/scip/file_declarations.h"
#include "host/scip/language.h"
#include "host/scip/relative_modules.h"
#include "host/scip/scip_symbols.h"
#include "host/sources/language.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace host::scip {

using indexing::Extraction;
using indexing::ImportReport;

namespace {

// Adds a path to those that an index notes, each ended by "\n", as long as they are not too many.
void add_noted(const std::string& path, std::string& paths) {
    constexpr std::size_t MOST = 65'536;  // bytes
    if (path.find('\n') == std::string::npos && paths.size() + path.size() < MOST) {
        paths.append(path).append("\n");
    }
}

// Of several documents of one file, the one that says what a token names counts.
std::vector<indexing::NamedToken> by_offset(std::vector<indexing::NamedToken> tokens) {
    std::ranges::sort(tokens);  // LOCAL_SYMBOL comes last
    const auto stands_there_too = [](const indexing::NamedToken& one, const indexing::NamedToken& other) {
        return one.offset == other.offset;
    };
    tokens.erase(std::unique(tokens.begin(), tokens.end(), stands_there_too), tokens.end());
    return tokens;
}

// What becomes of one file, and of its source, which is null when it could not be read.
class FileExtractor {
  public:
    FileExtractor(const Contents& contents, const sources::Sources& sources, ImportReport& report)
        : contents_(contents), sources_(sources), sites_(contents), callable_types_(sources), report_(report) {}

    indexing::ExtractedFile extract(const std::string& path, const FileContents& file) {
        const auto found = sources_.find(path);
        const sources::Source* const source = found == sources_.end() ? nullptr : &found->second;
        const std::string language = language_of_file(path, file, source);
        ReadDeclarations read = read_declarations(path, file, language, contents_, sites_, callable_types_, source);
        report_source(path, language, source, read.out_of_damage);
        if (read.has_moved) {
            report_.moved.add(path);
        }
        return {.path = path,
                .language = language,
                .declared = std::move(read.declared),
                .content_hash = source == nullptr ? 0 : source->content_hash,
                .has_moved = read.has_moved,
                .references = {},
                .steps = file.documents};
    }

    // The files with declarations in parts that do not parse, each ended by "\n".
    [[nodiscard]] const std::string& damaged() const { return damaged_; }

    [[nodiscard]] const std::vector<std::string>& summaries() const { return summaries_; }

  private:
    // A header may be C++ without saying so.
    static std::string language_of_file(const std::string& path, const FileContents& file,
                                        const sources::Source* source) {
        const bool is_cpp = source != nullptr && source->outline && source->outline->is_cpp;
        return is_cpp && stated_language(file.language).empty() ? "cpp" : language_of(file.language, path);
    }

    void report_source(const std::string& path, const std::string& language, const sources::Source* source,
                       std::int64_t out_of_damage) {
        if (source == nullptr) {
            report_.unread.add(path);
            return;
        }
        ++report_.sources;
        summaries_.push_back(source->summary);
        if (!source->outline && sources::understood_language(language, path) != nullptr) {
            report_.unparsed.add(path);
        }
        if (source->outline && source->outline->is_damaged) {
            report_.damaged.add(path);
            report_.out_of_damage += out_of_damage;
            if (out_of_damage > 0) {
                add_noted(path, damaged_);
            }
        }
    }

    const Contents& contents_;
    const sources::Sources& sources_;
    const DefinitionSites sites_;
    const CallableTypes callable_types_;
    ImportReport& report_;
    std::string damaged_;
    std::vector<std::string> summaries_;
};

}  // namespace

Extraction extract(Contents contents, const sources::Sources& sources, const std::function<void()>& check_interrupt,
                   ImportReport& report) {
    Extraction extraction;
    FileExtractor extractor(contents, sources, report);
    for (const auto& [path, file] : contents.files) {
        extraction.files.push_back(extractor.extract(path, file));
        check_interrupt();
    }
    auto extracted = extraction.files.begin();
    for (auto& [path, file] : contents.files) {
        extracted->references = std::move(file.references);
        if (extracted->has_moved) {
            extracted->declared.names.clear();
        } else if (file.tokens) {
            extracted->tokens = by_offset(std::move(*file.tokens));
            extracted->misnamed = std::move(file.misnamed);
        }
        ++extracted;
    }
    for (const indexing::ExtractedFile& file : extraction.files) {
        extraction.languages.insert(file.language);  // an indexer follows imports as its language's compiler does
    }
    extraction.damaged = extractor.damaged();
    extraction.summaries = extractor.summaries();
    extraction.tokens = contents.tokens.take();
    add_relative_modules(extraction.files, contents.symbols);
    extraction.symbols = std::make_unique<ScipSymbols>(std::move(contents));
    return extraction;
}

}  // namespace host::scip
