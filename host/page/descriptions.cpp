#include "host/page/descriptions.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace host {

namespace {

struct Texts {
    std::string signature;
    std::string documentation;
};

}  // namespace

void read_descriptions(storage::Database& db, std::span<const storage::SymbolId> declarations,
                       const std::function<void(std::size_t place, const DescriptionRow& description)>& on_row) {
    constexpr std::size_t AT_A_TIME = 500;
    for (std::size_t begin = 0; begin < declarations.size(); begin += AT_A_TIME) {
        const auto some = declarations.subspan(begin, std::min(AT_A_TIME, declarations.size() - begin));
        std::unordered_map<storage::SymbolId, Texts> texts;
        db.read_descriptions({some.begin(), some.end()}, [&](const DescriptionRow& row) {
            texts[row.declaration] = {std::string(row.signature), std::string(row.documentation)};
        });
        for (std::size_t place = 0; place < some.size(); ++place) {
            const Texts& said = texts[some[place]];
            on_row(begin + place, {some[place], said.signature, said.documentation});
        }
    }
}

}  // namespace host
