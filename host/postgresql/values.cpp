#include "host/postgresql/values.h"

#include <utility>

namespace host::postgresql {

namespace {

// The numbers of the server's types, which are the same in every one.
constexpr unsigned int BYTEA = 17;
constexpr unsigned int INT8 = 20;
constexpr unsigned int TEXT = 25;
constexpr unsigned int BYTEA_ARRAY = 1001;
constexpr unsigned int INT8_ARRAY = 1016;

// The head of an array of one dimension, without nulls.
std::string array_head(unsigned int element_type, std::size_t size) {
    std::string head;
    append_integer(head, std::int32_t{size == 0 ? 0 : 1});
    append_integer(head, std::int32_t{0});
    append_integer(head, static_cast<std::int32_t>(element_type));
    if (size != 0) {
        append_integer(head, static_cast<std::int32_t>(size));
        append_integer(head, std::int32_t{1});  // the number of the first element
    }
    return head;
}

}  // namespace

Parameters& Parameters::integer(std::int64_t integer) {
    std::string bytes;
    append_integer(bytes, integer);
    values_.push_back({INT8, std::move(bytes)});
    return *this;
}

Parameters& Parameters::integers(std::span<const std::int64_t> integers) {
    std::string bytes = array_head(INT8, integers.size());
    for (const std::int64_t integer : integers) {
        append_integer(bytes, std::int32_t{sizeof(integer)});
        append_integer(bytes, integer);
    }
    values_.push_back({INT8_ARRAY, std::move(bytes)});
    return *this;
}

Parameters& Parameters::bytes(std::string_view bytes) {
    values_.push_back({BYTEA, std::string(bytes)});
    return *this;
}

Parameters& Parameters::bytes_list(std::span<const std::string_view> list) {
    std::string bytes = array_head(BYTEA, list.size());
    for (const std::string_view element : list) {
        append_integer(bytes, static_cast<std::int32_t>(element.size()));
        bytes += element;
    }
    values_.push_back({BYTEA_ARRAY, std::move(bytes)});
    return *this;
}

Parameters& Parameters::text(std::string_view text) {
    values_.push_back({TEXT, std::string(text)});
    return *this;
}

}  // namespace host::postgresql
