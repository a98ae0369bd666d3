// Text that must not grow beyond a message.
#pragma once

#include "host/serve/call.h"

#include <cstddef>
#include <ios>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace host::serve {

/// More was written than there is room for.
struct TooLarge {};

/// Takes what is written to a stream, whose exceptions must be on: throws `TooLarge` beyond `most` bytes, and `Cancelled`
/// once the call is cancelled.
class BoundedText : public std::streambuf {
  public:
    BoundedText(const Call& call, std::size_t most) : call_(call), most_(most) {}

    [[nodiscard]] std::string take() { return std::move(text_); }

  protected:
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        call_.check();
        if (static_cast<std::size_t>(count) > most_ - text_.size()) {
            throw TooLarge{};
        }
        text_.append(characters, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type character) override {
        const char one = traits_type::to_char_type(character);
        xsputn(&one, 1);
        return character;
    }

  private:
    const Call& call_;
    std::size_t most_;
    std::string text_;
};

}  // namespace host::serve
