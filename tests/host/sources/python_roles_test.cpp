// Which words of Python are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string PYTHON_FILE = R"("""none_a"""
import none_a.import_b as none_h
from .import_c import import_d, import_e as none_b
own_a = own_b = value_a  # none_c
own_c, own_d = call_a("none_d", f"{value_b} none_e")
own_f: "type_a[type_b] | None" = [value_c for local_x in value_d if local_x.value_e]
type own_g[local_t: type_c] = type_d[local_t]
for _ in value_f: pass
with call_b(call_c()) as _: pass
@value_g.call_d(key_a=value_h)
class own_class[local_t: type_q](type_e[local_t], metaclass=value_i):
    """none_f"""
    own_k: type_f = value_j
    own_l = own_m = 1
    def __init__(self, local_a: type_g = value_k, *local_b: type_h, local_c=None, **local_d):
        self.own_n: type_i = local_a
        self.own_o, self.own_p = local_b
        local_a.value_l = self.value_m
        super().call_e(local_c, *local_d)
    @property
    def own_q(self) -> "type_j": return self.call_f()
    class own_inner: own_r = value_n
def own_function[local_t](local_a, /, local_b: type_k, *, local_c: local_t = value_o) -> type_l[local_t]:
    local_use = local_later
    local_later = value_p
    local_x: type_m = local_a
    local_y, [local_z, *local_w] = value_q, local_b
    for local_i, local_j in value_r.call_g(): local_i += local_j
    else: del local_i
    with call_h() as local_k, value_s as (local_l, local_m): call_i(local_k, local_l, key=local_m)
    try: pass
    except (value_ee, value_ff) as local_e: raise call_p(local_e) from local_e
    if (local_walrus := value_t) and any(local_deep := local_o for local_o in value_u): return local_walrus, local_deep
    call_j(lambda local_p, *local_q: local_p + local_q + value_v)
    [local_r for local_r in local_c if value_w]; {local_s: local_u for local_s, local_u in value_x}
    match local_x:
        case value_gg(local_aa, key_b=local_bb) | value_hh.value_y: call_k(local_aa, local_bb)
        case [local_cc, *local_dd] if local_cc: call_l(local_dd)
        case {"none_g": local_ee, **local_ff}: call_m(local_ee, local_ff)
        case (1 | 2) as local_gg: call_n(local_gg)
        case _: pass
    def local_nested(local_a, local_hh=value_z):
        nonlocal local_x
        local_x = local_a + local_hh + local_y
        return local_nested(local_z)
    class local_class: local_ii = value_aa
    async def local_async():
        async with call_o() as local_jj: await local_jj
        async for local_kk in value_bb: yield local_kk
    return local_class, f"{local_w!r:>{value_cc}}", local_use, local_async, call_q(key_c=1)
)";

TEST(PythonRoles, EveryWordIsWhatItSays) {
    expect_roles("a.py", PYTHON_FILE);
}

TEST(PythonRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.py", PYTHON_FILE);
}

}  // namespace
}  // namespace host::sources
