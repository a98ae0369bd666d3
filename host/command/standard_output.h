// Prints results on standard output.
#pragma once

#include "host/files/remedy.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace host {

/// Takes what is written to a stream, piece by piece: however long it gets, nothing of it is copied again.
class TextPieces : public std::streambuf {
  public:
    [[nodiscard]] const std::vector<std::string>& pieces() const { return pieces_; }

  protected:
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        constexpr std::size_t PIECE = 1'048'576;
        const auto size = static_cast<std::size_t>(count);
        if (pieces_.empty() || pieces_.back().capacity() - pieces_.back().size() < size) {
            pieces_.emplace_back().reserve(std::max(PIECE, size));
        }
        pieces_.back().append(characters, size);
        return count;
    }
    int_type overflow(int_type character) override {
        const char one = traits_type::to_char_type(character);
        xsputn(&one, 1);
        return character;
    }

  private:
    std::vector<std::string> pieces_;
};

/// Has `write` write to a stream that keeps all of it. Throws what `write` throws.
template <class Write>
void write_to(TextPieces& text, Write write) {
    std::ostream out(&text);
    out.exceptions(std::ios::badbit);  // passes on that there is no memory
    write(out);
}

/// Prints what `write` writes, piece by piece. It is for results of which only the output can fail. Throws what `write`
/// throws, and `std::runtime_error` with one line when the output cannot be written completely.
template <class Write>
void print_at_once(Write write) {
    std::cout.exceptions(std::ios::badbit);  // throws at once, while errno holds the reason
    try {
        write(std::cout);
        std::cout << std::flush;
    } catch (const std::ios::failure&) {
        const std::error_code failure(errno, std::generic_category());
        std::cout.exceptions(std::ios::goodbit);  // the rest is flushed at exit, and must fail quietly
        throw std::runtime_error("standard output: cannot be written (" + failure.message() + "); " +
                                 remedy_for(failure));
    }
}

/// Prints a result. Throws `std::runtime_error` with one line when it cannot be written completely.
inline void print_text(const TextPieces& text) {
    print_at_once([&](std::ostream& out) {
        for (const std::string& piece : text.pieces()) {
            out << piece;
        }
    });
}

/// Prints all that `write` writes, or nothing when `write` throws. Throws what `write` and `print_text` throw.
template <class Write>
void print(Write write) {
    TextPieces text;
    write_to(text, std::move(write));
    print_text(text);
}

}  // namespace host
