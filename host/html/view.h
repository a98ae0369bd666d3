// What the template is filled with: objects, lists and texts.
#pragma once

#include "host/text/counted.h"

#include <kainjow/mustache.hpp>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace host::html {

/// A value of the template. A text is escaped where the template has "{{name}}", and is HTML where it has "{{{name}}}".
using View = kainjow::mustache::data;

/// An object has each of its names, those of nothing to show too: one that it lacks would be looked for around it.
inline View object_of(std::initializer_list<std::pair<const char*, View>> members) {
    View object(View::type::object);
    for (const auto& [name, value] : members) {
        object.set(name, value);
    }
    return object;
}

template <class Elements, class ViewOf>
View list_of(const Elements& elements, ViewOf view_of) {
    View list(View::type::list);
    for (const auto& element : elements) {
        list.push_back(view_of(element));
    }
    return list;
}

inline View text_of(std::string_view text) {
    return std::string(text);
}

inline View text_of(std::int64_t number) {
    return std::to_string(number);
}

/// A text whose section is not shown when it is empty.
inline View text_if_any(std::string_view text) {
    return text.empty() ? View(false) : text_of(text);
}

/// A number and its noun apart: "number", and "file" or "files" as "noun". `thing` is as `counted` takes it.
inline View number_view(std::int64_t number, const std::string& thing) {
    return object_of({{"number", text_of(number)}, {"noun", text_of(number == 1 ? thing : thing + "s")}});
}

/// How many things there are, as "2 files"; not shown when there are none.
inline View counted_if_any(std::size_t number, const std::string& thing) {
    return number == 0 ? View(false) : text_of(counted(static_cast<std::int64_t>(number), thing));
}

/// A number whose section is not shown when it is 0.
inline View number_if_any(std::size_t number) {
    return number == 0 ? View(false) : text_of(static_cast<std::int64_t>(number));
}

}  // namespace host::html
