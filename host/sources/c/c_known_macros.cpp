#include "host/sources/c/c_known_macros.h"

#include <algorithm>
#include <array>
#include <limits>

namespace host::sources {

namespace {

struct CPredefined {
    std::string_view name;
    std::int64_t least;
    std::int64_t most;
};

constexpr std::int64_t C_NO_LIMIT = std::numeric_limits<std::int64_t>::max();

// By name.
constexpr auto C_PREDEFINED = std::to_array<CPredefined>({
    {"_LP64", 1, 1},
    {"__CHAR_BIT__", 8, 8},
    {"__ELF__", 1, 1},
    {"__GNUC__", 4, C_NO_LIMIT},
    {"__LP64__", 1, 1},
    {"__SIZEOF_POINTER__", 8, 8},
    {"__SSE2__", 1, 1},
    {"__SSE__", 1, 1},
    {"__STDC__", 1, 1},
    {"__amd64", 1, 1},
    {"__amd64__", 1, 1},
    {"__gnu_linux__", 1, 1},
    {"__linux", 1, 1},
    {"__linux__", 1, 1},
    {"__unix", 1, 1},
    {"__unix__", 1, 1},
    {"__x86_64", 1, 1},
    {"__x86_64__", 1, 1},
});

// What a project may define itself on any system, such as `WINDOWS` or `MACOS`, is not among them.
constexpr auto C_OF_OTHER_SYSTEMS = std::to_array<std::string_view>({
    // Compilers.
    "__BORLANDC__",
    "__DMC__",
    "__HP_aCC",
    "__HP_cc",
    "__IBMC__",
    "__IBMCPP__",
    "__MWERKS__",
    "__SUNPRO_C",
    "__SUNPRO_CC",
    "__TURBOC__",
    "__WATCOMC__",
    "__xlC__",
    // Systems.
    "WIN32",
    "_AIX",
    "_MSC_FULL_VER",
    "_MSC_VER",
    "_WIN32",
    "_WIN32_WCE",
    "_WIN64",
    "__ANDROID__",
    "__APPLE_CC__",
    "__APPLE__",
    "__BEOS__",
    "__CYGWIN32__",
    "__CYGWIN__",
    "__DJGPP__",
    "__DragonFly__",
    "__EMSCRIPTEN__",
    "__EMX__",
    "__FreeBSD__",
    "__FreeBSD_kernel__",
    "__Fuchsia__",
    "__GNU__",
    "__GO32__",
    "__HAIKU__",
    "__INTERIX",
    "__MACH__",
    "__MINGW32__",
    "__MINGW64__",
    "__MSDOS__",
    "__MSYS__",
    "__MVS__",
    "__NetBSD__",
    "__OS2__",
    "__OS400__",
    "__OpenBSD__",
    "__PASE__",
    "__QNXNTO__",
    "__QNX__",
    "__SVR4",
    "__SYMBIAN32__",
    "__TOS_AIX__",
    "__TOS_MVS__",
    "__TOS_WIN__",
    "__VMS",
    "__WIN32__",
    "__WINDOWS__",
    "__amigaos__",
    "__bsdi__",
    "__hpux",
    "__hpux__",
    "__minix",
    "__native_client__",
    "__osf__",
    "__riscos__",
    "__sgi",
    "__sun",
    "__sun__",
    "__svr4__",
    "__ultrix",
    "__wasi__",
    "__wasm32__",
    "__wasm__",
    // Processors.
    "_M_AMD64",
    "_M_ARM",
    "_M_ARM64",
    "_M_IX86",
    "_M_PPC",
    "_M_X64",
    "__AARCH64EB__",
    "__AARCH64EL__",
    "__ARMEB__",
    "__ARMEL__",
    "__ARM_ARCH",
    "__ARM_NEON",
    "__ARM_NEON__",
    "__MIPSEB__",
    "__MIPSEL__",
    "__POWERPC__",
    "__PPC64__",
    "__PPC__",
    "__aarch64__",
    "__alpha",
    "__alpha__",
    "__arm64__",
    "__arm__",
    "__hppa__",
    "__i386",
    "__i386__",
    "__i486__",
    "__i586__",
    "__i686__",
    "__ia64",
    "__ia64__",
    "__loongarch64",
    "__loongarch__",
    "__m68k__",
    "__mips",
    "__mips64",
    "__mips__",
    "__powerpc64__",
    "__powerpc__",
    "__ppc64__",
    "__ppc__",
    "__riscv",
    "__s390__",
    "__s390x__",
    "__sh__",
    "__sparc",
    "__sparc64__",
    "__sparc__",
    "__sparcv9",
});

constexpr auto C_SORTED_OTHERS = [] {
    auto sorted = C_OF_OTHER_SYSTEMS;
    std::ranges::sort(sorted);
    return sorted;
}();

static_assert(std::ranges::is_sorted(C_PREDEFINED, {}, &CPredefined::name));

}  // namespace

CMacro known_c_macro(std::string_view name) {
    const auto* const found = std::ranges::lower_bound(C_PREDEFINED, name, {}, &CPredefined::name);
    if (found != C_PREDEFINED.end() && found->name == name) {
        return {.is_defined = C_TRUE, .value = {.least = found->least, .most = found->most}};
    }
    if (std::ranges::binary_search(C_SORTED_OTHERS, name)) {
        return {.is_defined = C_FALSE, .value = C_ANY};
    }
    return {};
}

}  // namespace host::sources
