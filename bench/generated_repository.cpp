#include "bench/generated_repository.h"

#include <protozero/pbf_writer.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

using Numbers = std::vector<std::int32_t>;

// The numbers of the fields of SCIP's messages.
enum Field : protozero::pbf_tag_type {
    INDEX_METADATA = 1,
    INDEX_DOCUMENTS = 2,
    METADATA_TOOL = 2,
    TOOL_NAME = 1,
    DOCUMENT_PATH = 1,
    DOCUMENT_OCCURRENCES = 2,
    DOCUMENT_SYMBOLS = 3,
    OCCURRENCE_RANGE = 1,
    OCCURRENCE_SYMBOL = 2,
    OCCURRENCE_ROLES = 3,
    OCCURRENCE_ENCLOSING_RANGE = 7,
    SYMBOL_NAME = 1,
    SYMBOL_DOCUMENTATION = 3,
};

std::string numbered(const char* format, int number) {
    constexpr std::size_t LONGEST = 64;
    std::array<char, LONGEST> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

class Writer {
  public:
    explicit Writer(const Repository& shape) : shape_(shape) {
        for (int file = 0; file < shape.files; ++file) {
            const std::string path = path_of(shape, file);
            const std::size_t name = path.rfind('/') + 1;
            scopes_.push_back("scip-typescript npm generated 1.0.0 " + path.substr(0, name) + "`" + path.substr(name) +
                              "`/");
        }
    }

    static std::string metadata() {
        std::string bytes;
        protozero::pbf_writer index(bytes);
        protozero::pbf_writer metadata(index, INDEX_METADATA);
        protozero::pbf_writer tool(metadata, METADATA_TOOL);
        tool.add_string(TOOL_NAME, "generator");
        tool.commit();
        metadata.commit();
        return bytes;
    }

    std::string document(int file) {
        std::string bytes;
        protozero::pbf_writer index(bytes);
        protozero::pbf_writer document(index, INDEX_DOCUMENTS);
        document.add_string(DOCUMENT_PATH, path_of(shape_, file));
        std::int32_t line = 1;
        for (int place = 0; place < shape_.declarations_per_file; ++place) {
            constexpr std::int32_t LINES = 30;
            const std::string symbol = symbol_of(file * shape_.declarations_per_file + place);
            add_occurrence(document, symbol, {line, 9, 20}, {line, 0, line + LINES - 2, 1});
            protozero::pbf_writer information(document, DOCUMENT_SYMBOLS);
            information.add_string(SYMBOL_NAME, symbol);
            information.add_string(SYMBOL_DOCUMENTATION,
                                   "```ts\nfunction declaration(a: number, b: string): void\n```");
            line += LINES;
        }
        const std::vector<int> targets = targets_of(file);
        for (int token = 0; token < shape_.tokens_per_target; ++token) {
            for (const int target : targets) {
                add_occurrence(document, symbol_of(target), {++line, 4, 20}, {});
            }
        }
        document.commit();
        return bytes;
    }

  private:
    std::string symbol_of(int declaration) const {
        return scopes_[static_cast<std::size_t>(declaration / shape_.declarations_per_file)] +
               numbered("part_%d().", declaration);
    }

    static void add_occurrence(protozero::pbf_writer& document, const std::string& symbol, const Numbers& range,
                               const Numbers& enclosing) {
        protozero::pbf_writer occurrence(document, DOCUMENT_OCCURRENCES);
        occurrence.add_packed_int32(OCCURRENCE_RANGE, range.begin(), range.end());
        occurrence.add_string(OCCURRENCE_SYMBOL, symbol);
        if (!enclosing.empty()) {
            occurrence.add_int32(OCCURRENCE_ROLES, 1);
            occurrence.add_packed_int32(OCCURRENCE_ENCLOSING_RANGE, enclosing.begin(), enclosing.end());
        }
    }

    // The declarations that a file refers to, each once.
    std::vector<int> targets_of(int file) {
        constexpr int IN_THE_NEIGHBOURHOOD = 3;  // one of three
        const int all = shape_.files * shape_.declarations_per_file;
        std::set<int> targets;
        while (std::ssize(targets) < shape_.targets_per_file) {
            const double uniform = static_cast<double>(random_()) / static_cast<double>(std::mt19937::max());
            const int reach = shape_.files_per_folder * shape_.declarations_per_file;
            const int near = file * shape_.declarations_per_file + static_cast<int>((uniform - 0.5) * reach);
            const int far = static_cast<int>(std::pow(all, uniform)) - 1;
            targets.insert(std::clamp(random_() % IN_THE_NEIGHBOURHOOD == 0 ? near : far, 0, all - 1));
        }
        return {targets.begin(), targets.end()};
    }

    const Repository& shape_;
    std::vector<std::string> scopes_;  // of the declarations, by file
    std::mt19937 random_{1};
};

}  // namespace

std::string path_of(const Repository& repository, int file) {
    const std::string folder =
        file < repository.core_files ? "src/core/" : numbered("src/product_%04d/", file / repository.files_per_folder);
    const bool is_test = file % 10 == 9;
    return folder + numbered(is_test ? "component_%05d.test.ts" : "component_%05d.ts", file);
}

void write_scip(const Repository& repository, const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    Writer writer(repository);
    out << Writer::metadata();
    for (int file = 0; file < repository.files; ++file) {
        out << writer.document(file);
    }
    out.close();
    if (!out) {
        throw std::runtime_error(path + ": cannot be written");
    }
}

}  // namespace bench
