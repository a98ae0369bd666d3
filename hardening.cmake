# What makes an optimized build harder to attack: addresses that are not known before it runs, tables that are read-only
# once it runs, and checks of the stack, of buffers and of the bounds of containers.
include(CheckCXXCompilerFlag)

set(optimized $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
set(gcc_since_12 $<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_GREATER_EQUAL:$<CXX_COMPILER_VERSION>,12>>)

set(hardening -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=$<IF:${gcc_since_12},3,2> -D_GLIBCXX_ASSERTIONS)
foreach(flag -fstack-clash-protection -fcf-protection)  # of some processors alone
    string(MAKE_C_IDENTIFIER has${flag} is_known)
    check_cxx_compiler_flag(${flag} ${is_known})
    if(${is_known})
        list(APPEND hardening ${flag})
    endif()
endforeach()
if(NOT CMAKE_POSITION_INDEPENDENT_CODE)  # which is more than an executable takes
    list(APPEND hardening -fPIE)
endif()

add_compile_options("$<${optimized}:${hardening}>")
add_link_options("$<${optimized}:-pie;-Wl,-z,relro,-z,now>")
