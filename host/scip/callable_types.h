// Which types can be called, for the constants that have them.
//
//     interface Parse { (text: string): Value }
//     const parse: Parse = ...                        a function
//     const safeParse: Parse & { strict: Parse }      a function
#pragma once

#include "host/sources/source_reader.h"

#include <functional>
#include <set>
#include <span>
#include <string>

namespace host::scip {

/// The names of the types that the sources of an index declare and that can be called: by a signature of their own, or
/// because a type that they extend or stand for can. A name that several types bear is one where all of them can.
class CallableTypes {
  public:
    CallableTypes() = default;
    explicit CallableTypes(const sources::Sources& sources);

    /// Whether what has all of these types can be called.
    [[nodiscard]] bool hold_one_of(std::span<const std::string> names) const;

  private:
    std::set<std::string, std::less<>> names_;
};

}  // namespace host::scip
