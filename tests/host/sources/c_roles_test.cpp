// Which words of C and C++ are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string C_FILE = R"(
#include "none_header.h"
#if defined(VALUE_a) && VALUE_b > 1 /* none_a */
#endif
#define OWN_CONSTANT VALUE_c  // none_b
#define OWN_CALLED(local_p, local_q) call_a((struct type_ee *)(local_p), value_d + local_q, "none_c")
struct own_struct {
    type_a own_field;
    struct type_b *own_pointer, own_array[VALUE_e];
    type_c (*own_callback)(type_d local_a);
    unsigned own_bits : VALUE_f;
    struct { int own_inner; } own_nested;
};
union own_union { type_e **own_member; };
enum own_enum { OWN_FIRST = VALUE_g, OWN_SECOND };
typedef type_f own_alias, *own_aliases;
typedef type_g (*own_function_type)(type_h local_a, type_i *);
typedef struct { int own_of_typedef; } own_named;
static const type_j *own_variable = &value_h;
extern type_k own_table[][2];
type_l *own_prototype(type_m local_a, const type_n *local_b);
int own_old(local_a, local_b) type_o *local_a; type_p local_b; { return local_a->value_i; }
type_q own_function(type_r local_a, type_s (*local_b)(type_t), type_u local_c[VALUE_j]) {
    type_v local_x = local_a, *local_y = &value_k, local_z[] = {value_l, local_x};
    for (int local_i = value_m; local_i < call_b(local_x); local_i++) local_y[local_i].value_n = local_b(1);
    switch (local_x) { case VALUE_o: break; default: call_c('a', "none_d", local_z); }
local_label:
    if (value_p || !local_c) goto local_label;
    struct type_w local_s = {.key_a = value_q, .key_b.key_c = 1, .key_d = {.key_e = local_x}};
    do { local_s = (struct type_x){.key_f = value_x}; } while (sizeof(struct type_y) + sizeof value_r);
    enum local_enum { LOCAL_E = VALUE_s }; struct local_struct { type_z local_member; } local_t;
    typedef int local_type; local_type local_u = (type_aa *)LOCAL_E + offsetof(type_bb, value_t);
    call_g(1) ? local_t : value_v[local_u];
    return value_w ? *value_y++ : call_e(&local_u, call_f());
}
)";

TEST(CRoles, EveryWordIsWhatItSays) {
    expect_roles("a.c", C_FILE);
}

TEST(CRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.c", C_FILE);
}

const std::string CPP_FILE = R"cpp(
namespace outer { inline namespace inner { int own_in_space; } }
using own_alias = type_a<type_b, 3>;
template <class local_t, typename local_u = type_c, int local_n = value_a> struct own_template : public type_d<local_t> {
    local_t own_field = value_b;
    using own_member_type = type_e<local_u>;
    template <class local_v> local_v own_method(local_v local_a) const { return local_a.call_j(local_n); }
};
enum class own_enum : type_f { own_enumerator = VALUE_e };
struct own_class final : type_g, private type_h::type_i {
public:
    explicit own_class(type_j local_a) : call_k(local_a), call_l{local_a} { value_g = local_a; }
    virtual type_l own_virtual(const type_m& local_a = value_h) const override = 0;
    static inline type_n own_static = call_a();
    bool operator==(const type_o& local_b) const { return local_b.value_i == this->value_j; }
    operator type_p() const;
    friend type_k operator+(type_q);
private:
    std::vector<type_r*> own_list{value_k, value_l};
};
type_s type_t::own_outside(type_u local_a) noexcept { return call_b(local_a); }
type_v own_function(type_w&& local_a, auto... local_b) {
    auto local_x = new type_x(local_a, value_m), local_y = local_x;
    auto [local_k, local_v] = call_c(local_b...);
    for (const auto& [local_p, local_q] : value_n) { local_p.call_d(local_q); }
    for (auto [local_f, local_g] : [] {}) { local_f = local_g; }
    if (auto* local_c = dynamic_cast<type_y*>(local_x); local_c != nullptr) local_c->call_e();
    try { throw call_m(value_o); } catch (const type_aa& local_e) { local_e.call_f(); } catch (...) {}
    auto local_l = [&local_x, local_n = value_p, this](type_bb local_a) -> type_cc { return local_n + local_a + value_q; };
    type_dd<type_ee>::call_g(value_r); ::call_h(type_ff::value_s); delete local_x;
    using local_alias = type_gg; local_alias local_z{value_t}; type_hh local_w(1, value_u);
    struct local_class { int local_m; void local_f(int local_g) { local_m = local_g + value_v; } };
    static_assert(sizeof(type_ii*) > 1, "none_a"); R"q(none_b)q";
    switch (int local_s = call_i()) { case type_jj::VALUE_w: return local_s; }
    return local_l(local_y), local_k, static_cast<type_kk>(local_v);
}
)cpp";

TEST(CppRoles, EveryWordIsWhatItSays) {
    expect_roles("a.cc", CPP_FILE);
}

TEST(CppRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("a.cc", CPP_FILE);
}

}  // namespace
}  // namespace host::sources
