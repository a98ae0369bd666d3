// Failures to read or write an index.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace host {

/// A failure to read or to write an index. `what()` is one line that names the index, gives the words of what keeps it
/// and, where the machine is at fault, says what to do.
class IndexError : public std::runtime_error {
  public:
    IndexError(const std::string& what, std::string reason) : runtime_error(what), reason_(std::move(reason)) {}

    /// Why, without the name of the index and without advice.
    [[nodiscard]] const std::string& reason() const { return reason_; }

    /// Whether it is the index that is at fault: it is damaged, or does not have the tables and columns of one.
    [[nodiscard]] virtual bool is_about_content() const = 0;

  private:
    std::string reason_;
};

/// An index that cannot be read as it is. `what()` is one line that names it and says what is wrong with it.
class UnusableIndex : public std::runtime_error {
  public:
    enum class Fault : std::uint8_t {
        MISSING,     ///< there is no such index
        FOREIGN,     ///< what is there is no index
        OUTDATED,    ///< an index of an older schema version
        UNPREPARED,  ///< a database that was not prepared for indexes of this version
        UNTRUSTED,   ///< a database in which somebody else has put code where an index should be
        NEWER,       ///< an index of a newer program, or a database that was prepared for those
    };

    UnusableIndex(Fault fault, const std::string& index, const std::string& reason)
        : runtime_error(index + ": " + reason), fault_(fault) {}

    [[nodiscard]] Fault fault() const { return fault_; }

  private:
    Fault fault_;
};

}  // namespace host
