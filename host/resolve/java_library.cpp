#include "host/resolve/java_library.h"

#include <algorithm>
#include <array>

namespace host::resolve {

namespace {

using std::string_view;

struct Primitive {
    string_view name;
    string_view box;
    int width;  // a value widens to any of a larger one; 0 for none
};

// A `char` widens as a `short` does, but neither is one of the other.
constexpr auto PRIMITIVES = std::to_array<Primitive>({{"boolean", "Boolean", 0},
                                                      {"byte", "Byte", 1},
                                                      {"short", "Short", 2},
                                                      {"char", "Character", 2},
                                                      {"int", "Integer", 3},
                                                      {"long", "Long", 4},
                                                      {"float", "Float", 5},
                                                      {"double", "Double", 6}});

const Primitive* primitive(string_view name) {
    const auto* const found = std::ranges::find(PRIMITIVES, name, &Primitive::name);
    return found == PRIMITIVES.end() ? nullptr : found;
}

bool is_box(string_view type) {
    return std::ranges::find(PRIMITIVES, type, &Primitive::box) != PRIMITIVES.end();
}

}  // namespace

bool is_java_primitive(string_view type) {
    return primitive(type) != nullptr;
}

bool java_widens(string_view from, string_view to) {
    const Primitive* const narrow = primitive(from);
    const Primitive* const wide = primitive(to);
    return narrow != nullptr && wide != nullptr && narrow->width > 0 && narrow->width < wide->width && to != "char";
}

string_view java_box(string_view primitive_type) {
    const Primitive* const found = primitive(primitive_type);
    return found == nullptr ? string_view() : found->box;
}

bool is_java_final(string_view type) {
    return type == "String" || type == "Class" || is_box(type);
}

bool java_final_inherits(string_view type, string_view base) {
    if (base == "Object" || base == "Serializable") {
        return true;
    }
    if (base == "Comparable") {
        return type != "Class";
    }
    if (base == "CharSequence") {
        return type == "String";
    }
    return base == "Number" && is_box(type) && type != "Boolean" && type != "Character";
}

}  // namespace host::resolve
