// Which words of Go are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string GO_FILE = R"(package none_p

import (
	"none_a/none_b" // none_c
)

const (
	own_a, own_b type_a = value_a, iota
	own_c
)
var own_d, own_e = call_a("none_d"), `none_e`
var own_f map[type_b][]*type_c = nil
type own_alias = type_d
type own_named type_e
type own_struct struct {
	own_g, own_h *value_b.type_f `json:"none_f"`
	own_i struct { own_j [VALUE_c]type_g }
	own_k func(local_a type_h, local_b ...type_i) (local_c type_j, local_d error)
	own_l chan<- type_k
}
type own_interface interface {
	type_l
	own_m(local_a type_m, type_n) (local_b type_o)
	~int | type_p
}
type own_generic[local_k comparable, local_v type_q[local_k]] struct { own_n map[local_k]local_v }
func own_function[local_t type_r](local_a local_t, local_b, local_c type_s) (local_r type_t, local_e error) {
	local_x, local_y := call_b(local_a), value_d
	var local_z, local_w type_u = value_e, local_x
	const local_const = VALUE_f
	for local_i := 0; local_i < value_g; local_i++ { local_z.call_c(local_i) }
	for local_k, local_v := range value_h { local_v.value_i = local_k }
	for range value_j {}
	if local_if, local_ok := value_k[local_y]; local_ok { return local_if, nil } else if local_ok { local_if.value_l++ }
	switch local_s := call_d(); local_s { case VALUE_m, local_w: call_e(); default: }
	switch local_s := local_c.(type) { case type_v, *type_w: local_s.call_n(); case nil: }
	select { case local_m := <-value_o: local_m.value_p = 1; case value_q <- local_b: }
local_label:
	for { break local_label; continue local_label; goto local_label }
	local_f := func(local_a type_x) (local_q type_y) { local_q = local_a.value_r; return }
	go call_f(local_f); defer func() { recover() }()
	type local_type struct { type_z; field type_aa }
	local_l := local_type{field: value_s}
	_ = type_bb{key_a: value_t, key_b: type_cc{key_c: 1}}
	_ = []type_dd{{key_d: value_u}}
	_ = map[string]int{value_v: value_w}
	_ = value_x.(type_ee); _ = local_l.value_y[1:value_z]; _ = make(chan type_ff, value_aa)
	return call_g[type_gg](local_const), &type_hh[type_ii]{}
}
func (local_s *type_jj[local_t]) own_method(local_t, type_kk) type_ll { return local_s.value_bb }
)";

TEST(GoRoles, EveryWordIsWhatItSays) {
    expect_roles("a.go", GO_FILE);
}

TEST(GoRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.go", GO_FILE);
}

}  // namespace
}  // namespace host::sources
