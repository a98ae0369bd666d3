// What the names of Python's typing module, and of its builtin containers, do with the types in brackets behind them.
#pragma once

#include <cstdint>
#include <string_view>

namespace host::sources {

enum class TypingForm : std::uint8_t {
    NONE,
    LIST,        ///< `List[A]`, `Iterator[A]`: a container of the first
    MAP,         ///< `Dict[K, A]`
    TUPLE,       ///< `Tuple[A, B]`, `Tuple[A, ...]`
    FIRST,       ///< `Optional[A]`, `Final[A]`: the first
    ANNOTATED,   ///< the first; what follows are no types
    UNION,       ///< `Union[A, B]`
    CLASS,       ///< `Type[A]`: the class itself
    CALLABLE,    ///< `Callable[[A], B]`
    AWAITABLE,   ///< `Awaitable[A]`
    COROUTINE,   ///< `Coroutine[A, B, C]`: gives C to those who wait
    LITERAL,     ///< holds no types
    PARAMETERS,  ///< `Generic[T]`: type parameters of the class
    SELF,
    ALIAS,  ///< `TypeAlias`: what is assigned is a type
};

/// By the name that the typing module, or the library, gives it; NONE for other names.
TypingForm typing_form(std::string_view name);

/// Whether a name of typing forms is a builtin of Python.
bool is_builtin_container(std::string_view name);

/// Whether names of the module are such forms.
bool has_typing_forms(std::string_view module);

}  // namespace host::sources
