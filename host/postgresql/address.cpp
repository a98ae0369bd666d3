#include "host/postgresql/address.h"

#include "host/postgresql/client_options.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

namespace host::postgresql {

namespace {

// None when the address cannot be read.
std::optional<ClientOptions> options_of(const std::string& url) {
    PQconninfoOption* const parsed = PQconninfoParse(url.c_str(), nullptr);
    return parsed == nullptr ? std::nullopt : std::optional(taken_from(parsed));
}

// A number, or several separated by commas.
bool is_port(std::string_view text) {
    return text.find_first_not_of("0123456789,") == std::string_view::npos;
}

bool is_secret(std::string_view keyword) {
    // The last three are of newer client libraries.
    constexpr std::array<std::string_view, 5> SECRETS{"password", "sslpassword", "oauth_client_secret",
                                                      "scram_client_key", "scram_server_key"};
    return std::ranges::find(SECRETS, keyword) != SECRETS.end();
}

bool is_sound(const std::pair<std::string, std::string>& option) {
    return option.first != "port" || is_port(option.second);
}

std::runtime_error no_address() {
    return std::runtime_error(
        "--index: not an address of PostgreSQL, as postgresql://user@host:5432/database; what has a meaning in one is "
        "written as % and two hexadecimal digits where it is part of a name or a password: @ as %40, / as %2F");
}

// Whether an @ can only end the user and the password, so that nothing of these is taken for something else.
bool is_unambiguous(std::string_view behind_scheme) {
    const std::size_t at = behind_scheme.find('@');
    return at == std::string_view::npos ||
           (behind_scheme.find_first_of("/?") > at && behind_scheme.find('@', at + 1) == std::string_view::npos);
}

std::string without_password(std::string_view url, std::size_t behind_scheme) {
    std::string name(url.substr(0, behind_scheme));
    std::string_view rest = url.substr(behind_scheme);
    if (const std::size_t at = rest.find('@'); at != std::string_view::npos) {
        name += rest.substr(0, std::min(at, rest.find(':')));
        rest.remove_prefix(at);
    }
    const std::size_t question = std::min(rest.find('?'), rest.size());
    name += rest.substr(0, question);
    rest.remove_prefix(question);
    char before = '?';
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const std::string_view parameter = rest.substr(0, rest.find('&'));
        if (!is_secret(parameter.substr(0, parameter.find('=')))) {
            name += before;
            name += parameter;
            before = '&';
        }
        rest.remove_prefix(parameter.size());
    }
    return name;
}

}  // namespace

Address::Address(std::string_view url) {
    const std::size_t behind_scheme = url.find("://") + 3;
    const bool is_url = url.starts_with("postgresql://") || url.starts_with("postgres://");
    const std::optional<ClientOptions> options = is_url ? options_of(std::string(url)) : std::nullopt;
    if (!options || !is_unambiguous(url.substr(behind_scheme)) || !std::ranges::all_of(*options, is_sound)) {
        throw no_address();
    }
    parameters_ = *options;
    name_ = without_password(url, behind_scheme);
    // A keyword may be written in more than one way.
    const std::optional<ClientOptions> shown = options_of(name_);
    if (!shown || std::ranges::any_of(*shown, is_secret, &ClientOptions::value_type::first)) {
        throw no_address();
    }
}

}  // namespace host::postgresql
