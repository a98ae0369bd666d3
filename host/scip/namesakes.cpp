#include "host/scip/namesakes.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using indexing::Meaning;
class NamesakeChoice {
  public:
    NamesakeChoice(Contents& contents, indexing::Modules& modules) : contents_(contents), modules_(modules) {
        for (const auto& [path, file] : contents.files) {
            for (const Definition& definition : file.definitions) {
                files_[definition.symbol].insert(path);
            }
        }
    }

    void choose(std::string_view path, FileContents& file) {
        std::vector<std::pair<Meaning, std::int64_t>> chosen;
        std::erase_if(file.references, [&](const auto& reference) {
            const std::span<const SymbolNumber> symbols = contents_.tokens.symbols(reference.first);
            const bool is_shared =
                std::ranges::any_of(symbols, [&](SymbolNumber symbol) { return contents_.namesakes.contains(symbol); });
            if (is_shared) {
                Meaning meaning;
                for (const SymbolNumber symbol : symbols) {
                    add(path, symbol, meaning);
                }
                chosen.emplace_back(std::move(meaning), reference.second);
            }
            return is_shared;
        });
        for (auto& [meaning, references] : chosen) {
            contents_.add_references(file, std::move(meaning), references);
        }
    }

  private:
    // Adds all that the symbol may mean in the file at `path`.
    void add(std::string_view path, SymbolNumber symbol, Meaning& meaning) {
        const auto namesakes = contents_.namesakes.find(symbol);
        if (namesakes == contents_.namesakes.end()) {
            meaning.push_back(symbol);
            return;
        }
        const std::set<std::string_view>& reached = modules_.reached_from(path);
        const auto add_if = [&](const auto& is_meant) {
            const std::size_t before = meaning.size();
            std::ranges::copy_if(namesakes->second, std::back_inserter(meaning),
                                 [&](SymbolNumber each) { return std::ranges::any_of(files_[each], is_meant); });
            return meaning.size() > before;
        };
        if (!add_if([&](std::string_view file) { return file == path; }) &&
            !add_if([&](std::string_view file) { return reached.contains(file); })) {
            add_if([](std::string_view) { return true; });
        }
    }

    Contents& contents_;
    indexing::Modules& modules_;
    std::unordered_map<SymbolNumber, std::set<std::string_view>> files_;  // that declare a symbol
};

}  // namespace

void choose_namesakes(Contents& contents, indexing::Modules& modules) {
    if (contents.namesakes.empty()) {
        return;
    }
    NamesakeChoice choice(contents, modules);
    for (auto& [path, file] : contents.files) {
        choice.choose(path, file);
    }
}

}  // namespace host::scip
