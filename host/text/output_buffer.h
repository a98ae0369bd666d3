// Text on its way to a stream.
#pragma once

#include <cstddef>
#include <ostream>
#include <string_view>
#include <vector>

namespace host {

/// Collects characters and hands them on in large pieces, since each call of a stream has its price. All its memory is
/// taken at the beginning. What is still here at the end is handed on by `flush` alone.
class OutputBuffer {
  public:
    explicit OutputBuffer(std::ostream& out) : out_(out), characters_(CAPACITY) {}

    void put(char character) {
        if (size_ == CAPACITY) {
            flush();
        }
        characters_[size_++] = character;
    }

    void put(std::string_view text) {
        if (CAPACITY - size_ < text.size()) {
            flush();
        }
        if (text.size() > CAPACITY) {
            out_ << text;
        } else {
            text.copy(characters_.data() + size_, text.size());
            size_ += text.size();
        }
    }

    void flush() {
        out_ << std::string_view(characters_.data(), size_);
        size_ = 0;
    }

  private:
    static constexpr std::size_t CAPACITY = 65'536;

    std::ostream& out_;
    std::vector<char> characters_;
    std::size_t size_ = 0;
};

}  // namespace host
