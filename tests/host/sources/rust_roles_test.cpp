// Which words of Rust are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string RUST_FILE = R"(//! none_a
use import_e::import_a::{import_b, import_c as none_c};
/// none_d [`none_e`]
#[derive(Debug)]
pub struct Own_struct<'a, Local_t: Type_a + 'a, const LOCAL_N: usize = 3> where Local_t: Type_b<Local_t> {
    pub own_a: &'a Type_c<Local_t>,
    own_b: [Type_d; VALUE_a],
}
struct Own_tuple(pub Type_e, Box<dyn Type_f + Send>);
enum Own_enum { Own_unit = VALUE_b as isize, Own_items(Type_g), Own_fields { own_c: Type_h } }
union Own_union { own_d: Type_i }
type Own_alias<Local_t> = Option<Type_j<Local_t>>;
const OWN_CONST: Type_k = VALUE_c;
static mut OWN_STATIC: Type_l = call_a();
pub trait Own_trait: Type_m { type Own_item: Type_n; const OWN_K: Type_o; fn own_e(&self, local_a: Type_p) -> Self::Type_q; }
impl<Local_t> Type_r for Type_s<Local_t> {
    type Own_item = Type_t;
    fn own_f<Local_u: Into<Type_u>>(mut self, local_a: Local_u, (local_b, local_c): (Type_v, Type_w)) -> Result<Self, Type_x> {
        self.value_d = local_a; self.call_b(local_b, local_c)
    }
}
mod own_module { fn own_g() { super::call_c(); } }
extern "C" { fn own_h(local_a: Type_y); }
macro_rules! own_macro { ($local_x:expr) => { none_f($local_x) } }
fn own_function(local_a: impl Fn(Type_z) -> Type_aa, local_b: &mut Type_bb) -> impl Type_cc {
    let local_x: Type_dd = value_e; let mut local_y = local_x;
    let (local_z, ref local_w, ..) = call_d(local_b, "none_g");
    let Type_ee { key_a, key_b: local_c, .. } = local_y;
    if let Some(local_d) = value_f && local_d.call_e() { local_d.value_g } else if let Err(_) = value_h {}
    let Some(local_e) = local_z else { return call_f(local_w) };
    while let Some(local_f @ 1..=9) = value_i.call_g() { local_f; }
    for (local_g, local_h) in value_j.iter() { local_g.call_h(local_h); }
    match local_e { Value_k::Value_l(local_i) | Value_m::Type_n_ { key_c: local_i } if local_i > VALUE_o => local_i, VALUE_p => value_q, local_j => local_j }
    'local_label: loop { break 'local_label value_r; }
    let local_k = move |local_l: Type_ff, (local_m, _)| -> Type_gg { local_l + local_m + local_c + value_s };
    fn local_fn(local_n: Type_hh) { call_i(local_n); } struct Local_struct { field: Type_ii } const LOCAL_C: u8 = VALUE_t;
    local_fn(Local_struct { field: LOCAL_C }); use import_f::import_d; 
    Call_m { key_d: value_u, ..value_v }; Type_w_::<Type_kk>::call_j(&local_k); <Type_ll as Type_mm>::call_k();
    println!("{} {local_x}", value_x.value_y); vec![value_z; VALUE_aa]; call_l!(none_i); /* none_j */
    async move { value_bb.await?; unsafe { value_cc as Type_nn } };
    local_a
}
)";

TEST(RustRoles, EveryWordIsWhatItSays) {
    expect_roles("a.rs", RUST_FILE);
}

TEST(RustRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.rs", RUST_FILE);
}

}  // namespace
}  // namespace host::sources
