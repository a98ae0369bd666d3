#include "host/sources/python/typing_forms.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace host::sources {

TypingForm typing_form(std::string_view name) {
    using enum TypingForm;
    static const std::unordered_map<std::string_view, TypingForm> FORMS{
        {"AbstractSet", LIST},
        {"AsyncGenerator", LIST},
        {"AsyncIterable", LIST},
        {"AsyncIterator", LIST},
        {"Collection", LIST},
        {"Container", LIST},
        {"Deque", LIST},
        {"FrozenSet", LIST},
        {"Generator", LIST},
        {"Iterable", LIST},
        {"Iterator", LIST},
        {"KeysView", LIST},
        {"List", LIST},
        {"MutableSequence", LIST},
        {"MutableSet", LIST},
        {"Reversible", LIST},
        {"Sequence", LIST},
        {"Set", LIST},
        {"ValuesView", LIST},
        {"deque", LIST},
        {"frozenset", LIST},
        {"list", LIST},
        {"set", LIST},
        {"DefaultDict", MAP},
        {"Dict", MAP},
        {"Mapping", MAP},
        {"MutableMapping", MAP},
        {"OrderedDict", MAP},
        {"defaultdict", MAP},
        {"dict", MAP},
        {"Tuple", TUPLE},
        {"tuple", TUPLE},
        {"ClassVar", FIRST},
        {"Final", FIRST},
        {"InitVar", FIRST},
        {"NotRequired", FIRST},
        {"Optional", FIRST},
        {"ReadOnly", FIRST},
        {"Required", FIRST},
        {"Annotated", ANNOTATED},
        {"Union", UNION},
        {"Type", CLASS},
        {"type", CLASS},
        {"Callable", CALLABLE},
        {"Awaitable", AWAITABLE},
        {"Future", AWAITABLE},
        {"Task", AWAITABLE},
        {"Coroutine", COROUTINE},
        {"Literal", LITERAL},
        {"Generic", PARAMETERS},
        {"Protocol", PARAMETERS},
        {"Self", SELF},
        {"TypeAlias", ALIAS},
    };
    const auto found = FORMS.find(name);
    return found == FORMS.end() ? NONE : found->second;
}

bool is_builtin_container(std::string_view name) {
    constexpr auto BUILTINS = std::to_array<std::string_view>({"dict", "frozenset", "list", "set", "tuple", "type"});
    return std::ranges::find(BUILTINS, name) != BUILTINS.end();
}

bool has_typing_forms(std::string_view module) {
    constexpr auto MODULES = std::to_array<std::string_view>(
        {"asyncio", "collections", "collections.abc", "dataclasses", "typing", "typing_extensions"});
    return std::ranges::find(MODULES, module) != MODULES.end();
}

}  // namespace host::sources
