// JSON written piece by piece: containers as they are walked, what stands in them by nlohmann-json.
#pragma once

#include <nlohmann/json.hpp>

#include <ostream>
#include <string_view>

namespace host {

using Json = nlohmann::ordered_json;

/// Writes JSON to a stream: containers are opened and closed, members and elements written in between. Each element
/// of an outer container stands on a line of its own. Bytes that are not UTF-8 become U+FFFD.
class JsonWriter {
  public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}

    /// `fill` writes the members of the whole document. First of all, and once.
    template <class Fill>
    void document(Fill fill) {
        enclose('{', '}', fill);
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

    void member(std::string_view key, const Json& value) {
        name(key);
        out_ << text(value);
    }

    void element(const Json& value) {
        next();
        out_ << text(value);
    }

  private:
    static std::string text(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

    void next() {
        out_ << (is_first_ ? "\n" : ",\n");
        is_first_ = false;
    }

    void name(std::string_view key) {
        next();
        out_ << text(key) << ": ";
    }

    template <class Fill>
    void enclose(char open, char close, Fill fill) {
        out_ << open;
        is_first_ = true;
        fill();
        out_ << (is_first_ ? "" : "\n") << close;
        is_first_ = false;
    }

    std::ostream& out_;
    bool is_first_ = true;
};

}  // namespace host
