// JSON written piece by piece, so that no document has to fit into memory as a tree.
#pragma once

#include "host/text/output_buffer.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string_view>
#include <type_traits>
#include <utility>

namespace host {

/// Writes one JSON value on one line, without blanks. Bytes that are not UTF-8 become U+FFFD.
class JsonValue {
  public:
    JsonValue(const JsonValue&) = delete;
    JsonValue& operator=(const JsonValue&) = delete;
    ~JsonValue() = default;

    void null() { raw("null"); }
    void value(std::string_view text);
    void value(double number);
    template <std::integral Number>
    void value(Number number) {
        if constexpr (std::is_same_v<Number, bool>) {
            raw(number ? "true" : "false");
        } else {
            constexpr std::size_t LONGEST = 20;  // characters of 64 bits
            std::array<char, LONGEST> digits{};
            const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
            raw({digits.data(), static_cast<std::size_t>(end - digits.data())});
        }
    }
    /// None is null.
    template <class Value>
    void value(const std::optional<Value>& given) {
        given ? value(*given) : null();
    }
    /// What is JSON already, without blanks.
    void raw(std::string_view json) {
        begin();
        out_.put(json);
    }

    /// `fill` writes the members.
    template <class Fill>
    void object(Fill fill) {
        enclose('{', '}', fill);
    }
    /// `fill` writes the elements.
    template <class Fill>
    void array(Fill fill) {
        enclose('[', ']', fill);
    }
    /// Begins a member, whose value is written next. The key is a word.
    JsonValue& member(std::string_view key);

  private:
    friend class JsonWriter;
    explicit JsonValue(OutputBuffer& out) : out_(out) {}

    // Writes what stands before a value: a comma, unless it is the first of its container or has a key.
    void begin() {
        if (!std::exchange(stands_alone_, false)) {
            if (!std::exchange(is_first_, false)) {
                out_.put(',');
            }
        }
    }

    template <class Fill>
    void enclose(char open, char close, Fill fill) {
        begin();
        out_.put(open);
        const bool is_first_outside = std::exchange(is_first_, true);
        fill();
        is_first_ = is_first_outside;
        out_.put(close);
    }

    OutputBuffer& out_;
    bool stands_alone_ = true;  // whether no comma belongs before the next value, wherever it stands
    bool is_first_ = true;      // in the innermost container
};

/// Writes a JSON document to a stream: containers are opened and closed, members and elements written in between. Each
/// element of these containers stands on a line of its own. However long the document or a text, writing it takes no
/// more than some 100 KB of memory.
class JsonWriter {
  public:
    explicit JsonWriter(std::ostream& out) : out_(out), value_(out_) {}

    /// `fill` writes the members of the whole document, which ends its line. Called once.
    template <class Fill>
    void document(Fill fill) {
        enclose('{', '}', fill);
        out_.put('\n');
        out_.flush();
    }

    /// `fill` writes the members of the object that is the member `key`.
    template <class Fill>
    void object(std::string_view key, Fill fill) {
        name(key);
        enclose('{', '}', fill);
    }

    /// `fill` writes the elements of the array that is the member `key`.
    template <class Fill>
    void array(std::string_view key, Fill fill) {
        name(key);
        enclose('[', ']', fill);
    }

    /// Begins a member or an element, whose value is written next.
    JsonValue& member(std::string_view key) {
        name(key);
        return next_value();
    }
    JsonValue& element() {
        next();
        return next_value();
    }

  private:
    JsonValue& next_value() {
        value_.stands_alone_ = true;
        return value_;
    }

    // Begins the line of a member or an element.
    void next() {
        if (!std::exchange(is_first_, false)) {
            out_.put(',');
        }
        out_.put('\n');
    }

    void name(std::string_view key) {
        next();
        next_value().value(key);
        out_.put(": ");
    }

    template <class Fill>
    void enclose(char open, char close, Fill fill) {
        out_.put(open);
        is_first_ = true;
        fill();
        if (!is_first_) {
            out_.put('\n');
        }
        out_.put(close);
        is_first_ = false;
    }

    OutputBuffer out_;
    JsonValue value_;
    bool is_first_ = true;
};

}  // namespace host
