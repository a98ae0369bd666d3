// What values are, where several are known or only their type is.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Space;

ExpressionId PythonReader::type_of(ExpressionId value) {
    return value == syntax::UNKNOWN ? value : out_.add(Operation::TYPE_OF, value);
}

// What any of the values may be. One of which nothing is known may be anything, and so may one of very many.
ExpressionId PythonReader::joined(const std::vector<ExpressionId>& values) {
    constexpr std::size_t MOST = 16;
    const std::unordered_set<ExpressionId> different(values.begin(), values.end());
    return different.contains(syntax::UNKNOWN) || different.size() > MOST ? syntax::UNKNOWN : out_.one_of(values);
}

// A member whose name is not written here.
ExpressionId PythonReader::member(ExpressionId of, std::string_view name) {
    return out_.add({.operation = Operation::MEMBER,
                     .a = of,
                     .b = static_cast<std::uint32_t>(Space::VALUE),
                     .name = out_.name(name)});
}

}  // namespace host::sources
