// JSON written piece by piece, so that no document has to fit into memory as a tree.
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string_view>
#include <type_traits>

namespace host {

/// The library's writer, for which texts that nothing is escaped in are copied at once.
class CopyingWriter : public rapidjson::Writer<rapidjson::StringBuffer> {
  public:
    using Writer::Writer;

    /// Writes a text, or a key, that holds nothing but characters of ASCII which stand for themselves in JSON.
    void copy(std::string_view text) {
        Prefix(rapidjson::kStringType);
        char* const at = os_->Push(text.size() + 2);
        *at = '"';
        std::ranges::copy(text, at + 1);
        *(at + text.size() + 1) = '"';
    }
};

/// Writes one JSON value on one line, without blanks. Bytes that are not UTF-8 become U+FFFD.
class JsonValue {
  public:
    JsonValue(const JsonValue&) = delete;
    JsonValue& operator=(const JsonValue&) = delete;
    ~JsonValue() = default;

    void null() { writer_.Null(); }
    void value(std::string_view text);
    void value(double number);
    template <std::integral Number>
    void value(Number number) {
        if constexpr (std::is_same_v<Number, bool>) {
            writer_.Bool(number);
        } else if constexpr (std::is_signed_v<Number>) {
            writer_.Int64(number);
        } else {
            writer_.Uint64(number);
        }
    }
    /// None is null.
    template <class Value>
    void value(const std::optional<Value>& given) {
        given ? value(*given) : null();
    }
    /// What is JSON already, without blanks.
    void raw(std::string_view json);

    /// `fill` writes the members.
    template <class Fill>
    void object(Fill fill) {
        writer_.StartObject();
        fill();
        writer_.EndObject();
    }
    /// `fill` writes the elements.
    template <class Fill>
    void array(Fill fill) {
        writer_.StartArray();
        fill();
        writer_.EndArray();
    }
    /// Begins a member, whose value is written next. The key is a word.
    JsonValue& member(std::string_view key) {
        writer_.copy(key);
        return *this;
    }

  private:
    friend class JsonWriter;
    explicit JsonValue(rapidjson::StringBuffer& buffer) : writer_(buffer) {}

    CopyingWriter writer_;
};

/// Writes a JSON document to a stream: containers are opened and closed, members and elements written in between. Each
/// element of these containers stands on a line of its own.
class JsonWriter {
  public:
    explicit JsonWriter(std::ostream& out) : out_(out), value_(buffer_) {}

    /// `fill` writes the members of the whole document, which ends its line. Called once.
    template <class Fill>
    void document(Fill fill) {
        enclose('{', '}', fill);
        buffer_.Put('\n');
        flush();
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
        value_.writer_.Reset(buffer_);
        return value_;
    }

    void next();
    void name(std::string_view key);
    void flush();

    template <class Fill>
    void enclose(char open, char close, Fill fill) {
        buffer_.Put(open);
        is_first_ = true;
        fill();
        if (!is_first_) {
            buffer_.Put('\n');
        }
        buffer_.Put(close);
        is_first_ = false;
    }

    std::ostream& out_;
    rapidjson::StringBuffer buffer_;  // what is not in the stream yet
    JsonValue value_;
    bool is_first_ = true;
};

}  // namespace host
