#include "host/postgresql/name_block.h"

#include "host/postgresql/values.h"
#include "host/text/ascii.h"

#include <cstdint>

namespace host::postgresql {

namespace {

// The declaration and its uses, 8 bytes each, and the length of the name, 4 bytes, stand before the name.
constexpr std::size_t USES = 8;
constexpr std::size_t LENGTH = 16;
constexpr std::size_t NAME = 20;

}  // namespace

void NameBlock::add(const NameRow& row) {
    declaration_ = is_empty() ? row.declaration : declaration_;
    lowered_ += host::lowered(row.name);
    append_integer(rows_, row.declaration);
    append_integer(rows_, row.uses);
    append_integer(rows_, static_cast<std::int32_t>(row.name.size()));
    rows_ += row.name;
}

bool NameBlock::is_full() const {
    constexpr std::size_t ENOUGH = 1800;  // a server stores rows of up to 2,000 bytes in one piece
    return lowered_.size() + rows_.size() > ENOUGH;
}

bool read_names(std::string_view rows, const OnRow<NameRow>& on_row) {
    while (rows.size() >= NAME) {
        const auto size = static_cast<std::size_t>(integer_of(rows.substr(LENGTH, NAME - LENGTH)));
        if (size > rows.size() - NAME) {
            return false;
        }
        on_row({.declaration = integer_of(rows.substr(0, USES)),
                .name = rows.substr(NAME, size),
                .uses = integer_of(rows.substr(USES, LENGTH - USES))});
        rows.remove_prefix(NAME + size);
    }
    return rows.empty();
}

}  // namespace host::postgresql
