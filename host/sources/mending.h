// Rewrites TypeScript that the grammar does not know in forms that it knows.
#pragma once

#include <string>
#include <string_view>

namespace host::sources {

/// The text of a TypeScript file with what the grammar does not know put as what it does know. The result is as long,
/// and every name and line that is left stands in its place. It may be wrong where a rule takes one thing for another,
/// so it is of use only where the text itself does not parse.
///
///     <K>(key: K): Box<K>                       <K>(key: K): Box<K>            a line with "<" is a member, not
///     <K, V>(key: K): Box<V>                   ;<K, V>(key: K): Box<V>         type arguments of the one above
///     interface A<in out T, out U>              interface A<       T,     U>
///     type A = B<<C>(c: C) => D>                type A = B<   (c: C) => D>
///     export type * from "m"                    export      * from "m"
///     export * from "m" with { type: "b" }      export * from "m"
///     import type A = B.C                       import      A = B.C
///     import defer * as a from "m"              import       * as a from "m"
///     abstract override a: 1                    abstract          a: 1
///     static accessor a = 1                     static readonly a = 1
///     for (using a of b)                        for (const a of b)
///     a: import("m").B[]                        a: import_____.B[]
///     a: typeof undefined                       a: typeof _ndefined
///     sql<{ a: 1 }>`b`                          sql          `b`
///     type A = `\`${B}\``                       type A = `  ${B}  `
///     (any) => void                             (_ny) => void                  a parameter; [new: A] has a label
///     type A<type> = { type }                   type A<_ype> = { _ype }        abstract, accessor and using, too
///     let as = 1                                let _s = 1                     in and satisfies, too
std::string mended(std::string_view text);

}  // namespace host::sources
