// What frozen records are made of.
//
// A frozen record is an aggregate: it is built by position or by name, its fields are const, and results may point into
// it for as long as it lives.
#pragma once

namespace models {

/// The default of a field that whoever builds a record must give, be it as `{}`. It turns into no value: a program that
/// leaves such a field out does not link, as the conversion is defined nowhere.
struct MustBeGiven {
    template <class Value>
    operator Value() const;
};
inline constexpr MustBeGiven MUST_BE_GIVEN{};

/// The last field of a record that stays where it was built: such a record can be neither copied nor moved, so nothing
/// that points into it comes to dangle while it lives. A function that builds one returns it all the same.
class Pinned {
  public:
    Pinned() = default;
    ~Pinned() = default;
    Pinned(const Pinned&) = delete;
    Pinned& operator=(const Pinned&) = delete;
};

}  // namespace models
