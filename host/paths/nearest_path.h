// The path of an index that is nearest to a mistyped one.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// The one of `paths` that `named`, which is none of them, was most likely meant to be; none when nothing is near.
///
/// Capitals and small letters A to Z count as the same throughout. Near is a path that ends in the same name, and one
/// that single edits turn into `named`: a character inserted, left out or replaced, or two neighbours exchanged. One
/// edit is allowed for every three characters of the name that `named` ends in, up to eight. The same name comes
/// before any other; then fewer edits; then, as beyond those allowed none are counted, more segments in common at the
/// end; then the order of the bytes. For `paths` src/a/Observable.ts, src/a/map.ts, src/b, src/b/map.ts:
///
///     src/a/Observble.ts        src/a/Observable.ts    one character left out
///     SRC/A/observable.TS       src/a/Observable.ts
///     Observable.ts             src/a/Observable.ts    the same name
///     lib/map.ts                src/a/map.ts           the first of the same name
///     src/bb/map.ts             src/b/map.ts           the same name, one edit away
///     /home/me/src/b/map.ts     src/b/map.ts           the same name, three segments in common
///     src/a/mpa.ts              src/a/map.ts           two characters exchanged
///     scr/b                     src/b                  the same name
///     src/a/tin.ts              none                   three edits, of two allowed
std::optional<std::string> nearest_path(std::string_view named, std::span<const std::string> paths);

}  // namespace host
