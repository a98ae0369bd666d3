// Which words of JavaScript and TypeScript are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string TYPESCRIPT_FILE = R"(import none_a, { import_a, import_b as none_b } from "none_c";
import * as none_d from './import_d'; // none_f
export { import_c as none_g } from "none_h";
/** none_i */
export const own_a: Type_a<Type_b> = value_a, own_b = `none_j ${value_b} none_k`;
export let own_c = (local_a: Type_c) => local_a.value_c;
export type Own_d<Local_t extends Type_d = Type_e> = Local_t extends Type_f<infer Local_u> ? Local_u : { [local_k in keyof Type_g]: Type_h[local_k] };
export interface Own_e<Local_t> extends Type_i<Local_t> { own_f?: Type_j; own_g(local_a: Type_k): local_a is Type_l; (local_b: Type_m): void; [local_c: string]: Type_n }
export enum Own_h { Own_i = value_d, Own_j }
export namespace own_k { export const own_l = value_e; }
@call_a({ key_x: 1 })
export abstract class Own_m<Local_t> extends Type_hh<Type_o> implements Type_p {
  static #field: Type_q = value_f;
  declare readonly own_o: typeof value_g;
  constructor(private own_p: Type_r, local_a?: Local_t) { super(local_a); this.value_h = local_a; }
  @value_i get own_q(): Promise<Type_s> { return this.#value_j; }
  async *own_r<Local_u>(local_a: Local_u = value_k, ...local_b: Type_t[]): Type_u { yield local_b; }
  abstract own_s: (local_a: Type_v) => Type_w;
}
export function own_t(local_a: Type_x, { key_a, key_b: local_b = value_l, ...local_c }: Type_y, [local_d, , local_e] = value_m): asserts local_a is Type_z {
  local_early(local_hoisted); var local_hoisted = value_n; function local_early(local_f) { return local_f + local_a; }
  const local_g = local_b as Type_aa, { key_c: { key_d: local_h }, [value_o]: local_i } = call_c(local_c);
  for (let local_j = 0; local_j < value_p; local_j++) { local_d.call_d(local_j); }
  for (const [local_k, local_l] of value_q) { local_k.value_r = local_l; }
  for (const local_m in value_s) local_m;
  try { call_e(); } catch ({ key_e: local_n }) { local_n.call_f(); } finally { throw new Call_g(local_g, local_h); }
  local_label: while (value_u) { continue local_label; }
  const local_o = async local_p => { await local_p; }, local_q = function local_r(...local_s) { local_r(local_s, arguments); };
  class Local_class<Local_t> { field = value_v; method(local_w: Local_t) { this.field = local_w; } }
  type Local_type = Type_bb; enum Local_enum { Local_x } interface Local_interface { local_y: Local_type }
  switch (local_i) { case Value_w.VALUE_x: { let local_z = value_y!; local_z; break; } }
  call_h<Type_cc>(local_o, new Local_class<Type_dd>(), { key_f: local_q, key_g: value_z }, /none_n/g);
  [local_d, value_aa.value_bb] = value_cc?.[value_dd]; call_i`none_o ${local_h}`;
  return <Type_ff>value_ff satisfies Type_gg;
}
)";

TEST(TypeScriptRoles, EveryWordIsWhatItSays) {
    expect_roles("a.ts", TYPESCRIPT_FILE);
}

TEST(TypeScriptRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.ts", TYPESCRIPT_FILE);
}

const std::string JAVASCRIPT_FILE = R"(const none_b = require("none_a").import_a, own_a = value_a;
class Own_c extends Value_b { static own_d = value_c; own_e() { this.value_n = value_d; } }
function own_g(local_a, local_b = value_e) {
  const local_c = () => <Call_a key_a={local_a} key_b="none_c" {...local_b}>none_d {value_f}<value_g.Call_b /></Call_a>;
  if (local_a) var local_e = value_h; function local_d() {}
  return local_d(local_c, local_e), delete value_i.value_j, typeof value_k;
}
module.exports = { key: value_l, own_k() { return value_m; } };
)";

TEST(JavaScriptRoles, EveryWordIsWhatItSays) {
    expect_roles("a.jsx", JAVASCRIPT_FILE);
}

TEST(JavaScriptRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.jsx", JAVASCRIPT_FILE);
}

}  // namespace
}  // namespace host::sources
