#include "host/text/json_writer.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

namespace host {
namespace {

std::string written(std::string_view text) {
    std::ostringstream out;
    JsonWriter json(out);
    json.document([&] { json.member("a").value(text); });
    return out.str();
}

// The library writes a text at once, the writer in pieces: no piece may end within a code point, nor within what is
// left of one.
TEST(JsonWriter, WritesLongTextsAsTheLibraryDoes) {
    constexpr std::array<std::string_view, 11> PARTS{
        "a",        "\n",   "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xE2\x82", "\x80", "\x80\x80\x80\x80",
        "\xF0\x9F", "\"\\", "\xFF"};
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        while (text.size() < 4'090 + static_cast<std::size_t>(round) * 40) {
            text += PARTS.at(random() % PARTS.size());
        }
        const auto replace = nlohmann::json::error_handler_t::replace;
        EXPECT_TRUE(written(text) == "{\n\"a\": " + nlohmann::json(text).dump(-1, ' ', false, replace) + "\n}\n")
            << round;
    }
    const std::string longer_than_the_buffer(200'000, 'x');
    EXPECT_EQ(written(longer_than_the_buffer), "{\n\"a\": \"" + longer_than_the_buffer + "\"\n}\n");
}

}  // namespace
}  // namespace host
