// Evaluates the condition of an `#if`, as far as it is certain.
#pragma once

#include "host/sources/c/c_known_macros.h"

#include <functional>
#include <string_view>

namespace host::sources {

/// Returns the bounds of what an expression of an `#if` gives; any number for one that is none.
CNumber evaluated_condition(std::string_view expression, const std::function<CMacro(std::string_view)>& macro);

/// Returns `!number`.
CNumber negated(const CNumber& number);

/// Returns `one || other`.
CNumber either(const CNumber& one, const CNumber& other);

/// Cuts blanks and comments off the beginning of a text.
void cut_blanks(std::string_view& text);

/// Cuts a word off the beginning of a text, behind blanks. Returns it, empty where there is none.
std::string_view cut_word(std::string_view& text);

}  // namespace host::sources
