// Options for numbers.
#pragma once

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace host {

/// Parses a decimal number that is not negative. Returns false when `text` is anything else, or does not fit into
/// `number`.
template <class Number>
bool parse_number(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return rest == end && error == std::errc() && std::isfinite(static_cast<double>(number)) && number >= 0;
}

/// Adds an option that is stored in the number that `number()` returns.
inline CLI::Option* add_number_setter(CLI::App& command, const std::string& name, auto number,
                                      const std::string& help) {
    const auto set = [number, name](const std::string& text) {
        if (!parse_number(text, number())) {
            throw CLI::ConversionError(name + ": \"" + text + "\" is not a valid number");
        }
    };
    return command.add_option_function<std::string>(name, set, help)->type_name("N");
}

/// Adds an option that is stored in an optional number.
template <class Number>
CLI::Option* add_number_option(CLI::App& command, const std::string& name, std::optional<Number>& number,
                               const std::string& help) {
    return add_number_setter(
        command, name, [&number]() -> Number& { return number.emplace(); }, help);
}

/// Adds an option that is stored in a number, whose initial value is the default.
template <class Number>
CLI::Option* add_number_option(CLI::App& command, const std::string& name, Number& number, const std::string& help) {
    std::ostringstream preset;
    preset << number;
    return add_number_setter(
               command, name, [&number]() -> Number& { return number; }, help)
        ->default_str(preset.str());
}

}  // namespace host
