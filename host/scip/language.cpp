#include "host/scip/language.h"

#include "host/files/file_language.h"
#include "host/scip/symbol.h"
#include "host/text/ascii.h"
#include "host/text/control_characters.h"

namespace host::scip {

std::string stated_language(std::string_view stated) {
    const bool says_something = stated.size() <= LONGEST_SYMBOL && !has_control_character(stated);
    return says_something ? lowered(stated) : std::string();
}

std::string language_of(std::string_view stated, std::string_view path) {
    const std::string language = stated_language(stated);
    return language.empty() ? std::string(usual_language(path)) : language;
}

}  // namespace host::scip
