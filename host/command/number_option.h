// An option that counts or shares something out.
#pragma once

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace host {

/// Sets a number from the whole of a decimal text; false when the text is none, the number cannot hold it, or it is
/// negative: what is counted or shared out never is.
template <class Number>
bool parse_number(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return rest == end && error == std::errc() && std::isfinite(static_cast<double>(number)) && number >= 0;
}

/// Adds an option whose value goes into the number that `number()` gives.
inline CLI::Option* add_number_setter(CLI::App& command, const std::string& name, auto number,
                                      const std::string& help) {
    const auto set = [number, name](const std::string& text) {
        if (!parse_number(text, number())) {
            throw CLI::ConversionError(name + ": \"" + text + "\" is not a number that can be used");
        }
    };
    return command.add_option_function<std::string>(name, set, help)->type_name("N");
}

/// Adds an option to a number that may be none.
template <class Number>
CLI::Option* add_number_option(CLI::App& command, const std::string& name, std::optional<Number>& number,
                               const std::string& help) {
    return add_number_setter(
        command, name, [&number]() -> Number& { return number.emplace(); }, help);
}

/// Adds an option to a number, which has its default.
template <class Number>
CLI::Option* add_number_option(CLI::App& command, const std::string& name, Number& number, const std::string& help) {
    std::ostringstream preset;
    preset << number;
    return add_number_setter(
               command, name, [&number]() -> Number& { return number; }, help)
        ->default_str(preset.str());
}

}  // namespace host
