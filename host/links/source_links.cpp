#include "host/links/source_links.h"

#include "host/text/ascii.h"
#include "host/text/percent_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

namespace host {

namespace {

// The names of the placeholders, in their order.
constexpr std::array<std::string_view, 4> NAMES{"{commit}", "{path}", "{first}", "{last}"};

bool is_of_address(char character) {
    constexpr std::string_view OTHERS = "0123456789-._~:/?#[]@!$&*+,;=%";
    return is_letter(character) || OTHERS.find(character) != std::string_view::npos;
}

}  // namespace

SourceUrl::SourceUrl(std::string_view text) {
    if (!text.starts_with("https://") && !text.starts_with("http://")) {
        throw std::runtime_error("an address of a source begins with https:// or http://");
    }
    while (!text.empty()) {
        const std::size_t begin = std::min(text.find('{'), text.size());
        Part part{.text = std::string(text.substr(0, begin))};
        if (!std::ranges::all_of(part.text, is_of_address)) {
            throw std::runtime_error("an address of a source has no blanks, quotes, brackets or the like");
        }
        text.remove_prefix(begin);
        if (!text.empty()) {
            const std::string_view name = text.substr(0, text.find('}') + 1);
            part.placeholder = placeholder_named(name);
            text.remove_prefix(name.size());
        }
        parts_.push_back(std::move(part));
    }
    if (!has(Placeholder::PATH)) {
        throw std::runtime_error("an address of a source holds {path}");
    }
}

SourceUrl::Placeholder SourceUrl::placeholder_named(std::string_view name) {
    const auto* const found = std::ranges::find(NAMES, name);
    if (found == NAMES.end()) {
        throw std::runtime_error(
            "an address of a source holds {commit}, {path}, {first} and {last}, and no other {...}");
    }
    return static_cast<Placeholder>(found - NAMES.begin() + 1);
}

bool SourceUrl::has(Placeholder placeholder) const {
    return std::ranges::any_of(parts_, [&](const Part& part) { return part.placeholder == placeholder; });
}

bool SourceUrl::has_commit() const {
    return has(Placeholder::COMMIT);
}

std::string SourceUrl::of(std::string_view commit, std::string_view path, std::int64_t first, std::int64_t last) const {
    const std::array<std::string, 5> values{"", percent_encoded(commit), percent_encoded(path), std::to_string(first),
                                            std::to_string(last)};
    std::string url;
    for (const Part& part : parts_) {
        url.append(part.text).append(values.at(static_cast<std::size_t>(part.placeholder)));
    }
    return url;
}

}  // namespace host
