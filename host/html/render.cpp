#include "host/html/render.h"

#include "host/html/html_text.h"
#include "host/html/templates.h"

#include <ostream>
#include <stdexcept>
#include <string>

namespace host::html {

void render(std::ostream& out, std::string_view text, View view) {
    view.set("top", text_of(templates::TOP));
    view.set("style", text_of(templates::STYLE));
    view.set("style_hash", text_of(templates::STYLE_HASH));
    view.set("script", text_of(templates::SCRIPT));
    view.set("script_hash", text_of(templates::SCRIPT_HASH));
    kainjow::mustache::mustache filled{std::string(text)};
    filled.set_custom_escape(html_text);
    filled.render(view, [&out](const std::string& part) { out << part; });
    if (!filled.is_valid()) {
        throw std::logic_error("a template: " + filled.error_message());
    }
    out << '\n';
}

}  // namespace host::html
