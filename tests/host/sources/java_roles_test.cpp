// Which words of Java are mentions, in which role, and which are declarations (role_words.h).
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sources {
namespace {

const std::string JAVA_FILE = R"(package none_p;
import none_a.Import_a;
import static none_b.Import_b.import_c;
/** none_c {@link none_d} */
@Type_a(key_a = value_a, key_b = {Type_nn.class})
public abstract class Own_class<Local_t extends Type_b & Type_c<Local_t>> extends Type_d<Local_t> implements Type_e, Type_f {
    private static final Type_g own_a = value_c, own_b[] = {value_d};
    @Type_h protected Type_i<? extends Type_j> own_c;
    static { call_a(); }
    { value_e = 1; }
    <Local_u> Own_class(Type_k local_a) throws Type_l { this.value_f = local_a; }
    abstract <Local_u extends Type_m> Local_u own_d(final @Type_n Type_o local_a, Type_p... local_b) throws Type_q;
    Type_r[] own_e(Type_s local_a, int local_b) {
        Type_t local_x = local_a, local_y = new Call_p(local_b);
        var local_z = value_g;
        for (int local_i = 0, local_j = value_h; local_i < local_j; local_i++) { local_x.call_b(local_i); }
        for (final Type_u local_v : value_i) local_v.value_j = 1;
        try (Type_v local_r = call_c(); value_k) { local_r.call_d(); }
        catch (Type_w | Type_x local_e) { local_e.call_e(); } finally { call_f(); }
        local_label: while (true) { break local_label; }
        call_g(local_p -> local_p.call_h(), (local_p, local_q) -> { return local_q + value_l; });
        call_i((Type_y local_p) -> local_p, Value_cc::value_m, local_y::value_n);
        if (value_o instanceof Type_aa local_c && local_c.call_j()) { return (Type_bb[]) local_z; }
        if (value_p instanceof Type_cc(Type_dd local_k, var local_l)) local_k.call_k(local_l);
        Object local_s = switch (local_x) { case VALUE_q -> value_r; case Type_ee local_m when local_m.call_l() -> local_m; default -> { yield value_s; } };
        class Local_class { int local_f; void method(int local_h) { local_f = local_h + value_t; } }
        record Local_record(int local_f) {}
        new Local_class().method(1);
        new Type_ff<>() { Type_gg local_own = value_u; void local_n(int local_o) { call_m(local_o); } };
        return new Type_hh[value_v][1]; // none_e
    }
    enum Own_enum { OWN_X(value_w), OWN_Y { int get() { return value_x; } }; Own_enum(int local_a) {} }
    interface Own_interface extends Type_ii { int OWN_K = value_y; default void own_g() { "none_f".call_n('a'); } }
    record Own_record<Local_t>(@Type_jj Type_kk own_h, Local_t own_i) { Own_record { call_o(); } }
    @interface Own_annotation { Type_ll own_k() default @Type_mm; }
}
)";

TEST(JavaRoles, EveryWordIsWhatItSays) {
    expect_roles("A.java", JAVA_FILE);
}

TEST(JavaRoles, WhatIsFoundInDamageStandsWhereItSays) {
    expect_true_places_in_damage("A.java", JAVA_FILE);
}

}  // namespace
}  // namespace host::sources
