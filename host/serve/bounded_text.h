// A stream buffer with a limit, for text that must fit into a message.
#pragma once

#include "host/serve/call.h"

#include <cstddef>
#include <ios>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace host::serve {

/// Thrown when a text exceeds its limit.
struct TooLarge {};

/// Collects what is written to a stream. Throws `TooLarge` beyond `most` bytes, and `Cancelled` once the call is
/// cancelled. The stream must have its exceptions enabled.
class BoundedText : public std::streambuf {
  public:
    BoundedText(const Call& call, std::size_t most) : call_(call), most_(most) {}

    /// Returns the text and leaves this object empty.
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
