#include "fuzz/decoded_page.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace fuzz {

namespace {

using models::Text;

constexpr std::array<std::string_view, 20> PATHS{
    "a.ts", "b.ts", "src/a.ts", "test/a.ts", "x/y/z.ts", "test.ts", "a|b.ts", "",  "/", "//",
    "c.ts", "d.ts", "e.ts",     "f.ts",      "g.ts",     "h.ts",    "i.ts",   "j", "k", "l"};
constexpr std::array<std::string_view, 6> NAMES{"f", "g", "_f", "a|b", "two\nlines", ""};
constexpr std::array<std::string_view, 13> KINDS{
    "function",  "method",    "constructor", "class",    "struct",   "enum", "type",
    "interface", "attribute", "constant",    "variable", "Function", ""};
constexpr std::array<std::string_view, 7> RESOLUTIONS{"import", "local", "unique", "legacy", "ambiguous", "Import", ""};
constexpr std::array<std::string_view, 3> LANGUAGES{"typescript", "lua", ""};

class Decoder {
  public:
    Decoder(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    DecodedPage page() {
        DecodedPage page{.numbers = numbers()};
        while (bytes_.remaining_bytes() > 0) {
            switch (bytes_.ConsumeIntegralInRange<int>(0, 5)) {
            case 0:
                add_file(page);
                break;
            case 1:
                page.index.symbols.push_back(symbol());
                break;
            case 2:
                page.index.inbound.push_back(inbound());
                break;
            case 3:
                page.index.outbound.push_back({one_of(PATHS), symbol(), one_of(RESOLUTIONS), references()});
                break;
            case 4:
                page.index.test_imports[one_of(PATHS)].insert(one_of(PATHS));
                break;
            default:
                page.missing.emplace_back(one_of(PATHS).view());
            }
        }
        return page;
    }

  private:
    Numbers numbers() {
        return {.total = integer(),
                .floor = integer(),
                .max_share =
                    bytes_.ConsumeBool() ? bytes_.ConsumeFloatingPoint<double>() : bytes_.ConsumeProbability<double>(),
                .limit = integer(),
                .per_file = integer()};
    }

    void add_file(DecodedPage& page) {
        const Text path = one_of(PATHS);
        std::optional<Text> language;
        if (bytes_.ConsumeBool()) {
            language = one_of(LANGUAGES);
            if (bytes_.ConsumeBool()) {
                page.index.resolved_languages.push_back(*language);
            }
        }
        page.index.files.push_back({integer(), path, language});
        if (bytes_.ConsumeBool()) {
            page.checkout[path].resize(bytes_.ConsumeIntegralInRange<std::size_t>(0, 3),
                                       bytes_.ConsumeRandomLengthString(LONGEST));
        }
    }

    storage::ScopeSymbol symbol() {
        return {.id = integer(),
                .path = one_of(PATHS),
                .name = one_of(NAMES),
                .kind = one_of(KINDS),
                .is_export = bytes_.ConsumeBool(),
                .start_line = line(),
                .end_line = line(),
                .fqn = one_of(NAMES)};
    }

    storage::InboundReference inbound() {
        return {.source_path = one_of(PATHS),
                .target_id = integer(),
                .target_path = one_of(PATHS),
                .target_name = one_of(NAMES),
                .target_kind = one_of(KINDS),
                .resolution = one_of(RESOLUTIONS),
                .refs = references()};
    }

    // Mostly small.
    std::int64_t integer() {
        const auto small = bytes_.ConsumeIntegralInRange<std::int64_t>(-2, 13);
        return small == 13 ? bytes_.ConsumeIntegral<std::int64_t>() : small;
    }

    // Where some are huge all have one sign: only then has a sum beyond 64 bits one result.
    std::int64_t references() {
        if (huge_sign_ == 0) {
            return bytes_.ConsumeIntegralInRange<std::int64_t>(-2, 12);
        }
        constexpr auto MAX = std::numeric_limits<std::int64_t>::max();
        return huge_sign_ * bytes_.ConsumeIntegralInRange<std::int64_t>(0, bytes_.ConsumeBool() ? 12 : MAX);
    }

    std::int32_t line() {
        const auto small = bytes_.ConsumeIntegralInRange<std::int32_t>(-1, 62);
        return small == 62 ? bytes_.ConsumeIntegral<std::int32_t>() : small;
    }

    // Mostly one of the given texts.
    template <std::size_t N>
    Text one_of(const std::array<std::string_view, N>& texts) {
        const auto choice = bytes_.ConsumeIntegralInRange<std::size_t>(0, N);
        const std::string text = choice < N ? std::string(texts[choice]) : bytes_.ConsumeRandomLengthString(LONGEST);
        return bytes_.ConsumeBool() ? shared_.try_emplace(text, text).first->second : Text(text);
    }

    static constexpr std::size_t LONGEST = 16;

    FuzzedDataProvider bytes_;
    std::int64_t huge_sign_ = bytes_.ConsumeIntegralInRange<std::int64_t>(-1, 1);
    std::unordered_map<std::string, Text> shared_;
};

}  // namespace

DecodedPage decode_page(const std::uint8_t* data, std::size_t size) {
    return Decoder(data, size).page();
}

wiki::scope::ScopeFacts load(DecodedPage& page) {
    const auto read_lines = [&page](const Text& path) {
        const std::vector<std::string>* const lines = page.checkout.find(path);
        return lines == nullptr ? std::nullopt : std::optional(*lines);
    };
    return wiki::scope::load_scope_facts(page.index, {}, read_lines);
}

}  // namespace fuzz
