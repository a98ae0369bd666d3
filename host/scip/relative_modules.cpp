#include "host/scip/relative_modules.h"

#include "host/scip/symbol.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace host::scip {

namespace {

constexpr std::string_view END_OF_MODULE = "/__init__:";  // of its symbol

struct Bearer {
    indexing::ExtractedFile* file;
    bool is_only_one;
};

// Modules by their release and the ends of their names.
using ModulesByEnd = std::map<std::pair<std::string_view, std::string>, Bearer>;

void add_ends(const Symbol& module, indexing::ExtractedFile& file, ModulesByEnd& by_end) {
    const std::string name = module_name(module.descriptors).value_or("");
    for (std::size_t dot = name.find('.'); dot != std::string::npos; dot = name.find('.', dot + 1)) {
        const auto [end, is_new] = by_end.try_emplace({module.head, name.substr(dot + 1)}, Bearer{&file, true});
        end->second.is_only_one = is_new;
    }
}

}  // namespace

void add_relative_modules(std::vector<indexing::ExtractedFile>& files, const SymbolTable& symbols) {
    ModulesByEnd by_end;
    std::set<SymbolNumber> modules;
    for (indexing::ExtractedFile& file : files) {
        for (const SymbolNumber number : file.declared.modules) {
            modules.insert(number);
            add_ends(parse_symbol(symbols.symbol(number)).value(), file, by_end);
        }
    }
    for (SymbolNumber number = 0; number < symbols.size(); ++number) {
        const std::string_view text = symbols.symbol(number);
        if (text.ends_with(END_OF_MODULE) && !modules.contains(number)) {
            const Symbol symbol = parse_symbol(text).value();
            const auto found = by_end.find({symbol.head, module_name(symbol.descriptors).value_or("")});
            if (found != by_end.end() && found->second.is_only_one) {
                found->second.file->declared.modules.push_back(number);
            }
        }
    }
}

}  // namespace host::scip
