#include "host/resolve/c_systems.h"

#include <algorithm>
#include <array>
#include <string>

namespace host::resolve {

namespace {

using std::string_view;

// In small letters. Names that a library may have as well, such as `io.h` or `process.h`, are not among them.
constexpr auto C_HEADERS_OF_OTHERS = std::to_array<string_view>({
    // Windows.
    "commctrl.h",
    "conio.h",
    "crtdbg.h",
    "d3d11.h",
    "d3d12.h",
    "d3d9.h",
    "dbghelp.h",
    "ddraw.h",
    "dinput.h",
    "dsound.h",
    "dxgi.h",
    "intrin.h",
    "iphlpapi.h",
    "iptypes.h",
    "mmsystem.h",
    "mswsock.h",
    "ntstatus.h",
    "oleauto.h",
    "psapi.h",
    "shellapi.h",
    "shlobj.h",
    "shlwapi.h",
    "tchar.h",
    "tlhelp32.h",
    "winbase.h",
    "wincrypt.h",
    "windef.h",
    "windows.h",
    "winerror.h",
    "wingdi.h",
    "wininet.h",
    "winioctl.h",
    "winnt.h",
    "winreg.h",
    "winsock.h",
    "winsock2.h",
    "winsvc.h",
    "winternl.h",
    "winuser.h",
    "winver.h",
    "ws2ipdef.h",
    "ws2tcpip.h",
    "xinput.h",
    // macOS and iOS.
    "availability.h",
    "availabilitymacros.h",
    "copyfile.h",
    "crt_externs.h",
    "libproc.h",
    "sys/kauth.h",
    "targetconditionals.h",
    // BSD.
    "kvm.h",
    "net/if_dl.h",
    "net/if_types.h",
    "pthread_np.h",
    "sys/cpuset.h",
    "sys/event.h",
    // Solaris.
    "kstat.h",
    "sys/devpoll.h",
    "sys/loadavg.h",
    "sys/port.h",
    "sys/processor.h",
    "sys/pset.h",
    "sys/sockio.h",
    // AIX and IBM i.
    "as400_protos.h",
    "as400_types.h",
    "libperfstat.h",
    "procinfo.h",
    "sys/ldr.h",
    "sys/mntctl.h",
    "sys/pollset.h",
    "sys/protosw.h",
    "sys/vmount.h",
    // Others.
    "finddirectory.h",
    "hurd.h",
    "os2.h",
    "sys/mpctl.h",
    "sys/neutrino.h",
    "sys/ps.h",
    "sys/pstat.h",
    "sys/syspage.h",
});

// The folders of such headers.
constexpr auto C_FOLDERS_OF_OTHERS = std::to_array<string_view>({
    "android/",
    "applicationservices/",
    "audiotoolbox/",
    "audiounit/",
    "carbon/",
    "cocoa/",
    "commoncrypto/",
    "coreaudio/",
    "corefoundation/",
    "coregraphics/",
    "coreservices/",
    "emscripten/",
    "hurd/",
    "iokit/",
    "libkern/",
    "mach-o/",
    "mach/",
    "systemconfiguration/",
    "uvm/",
});

// How folders of a repository begin that are for other systems.
constexpr auto C_OTHERS_IN_NAMES =
    std::to_array<string_view>({"amiga", "android", "djgpp", "macos", "mingw", "msdos", "msvc", "nmake", "os2", "os400",
                                "symbian", "vcbuild", "visualstudio", "vms", "win32", "win64", "wince", "windows"});

std::string in_small_letters(string_view name) {
    std::string small(name);
    std::ranges::transform(small, small.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return small;
}

}  // namespace

bool is_in_folder_of_other_system(string_view path) {
    const std::string small = in_small_letters(path);
    for (string_view rest = small; rest.find('/') != string_view::npos; rest.remove_prefix(rest.find('/') + 1)) {
        if (std::ranges::any_of(C_OTHERS_IN_NAMES, [&](string_view each) { return rest.starts_with(each); })) {
            return true;
        }
    }
    return false;
}

bool is_header_of_other_system(string_view name) {
    const std::string small = in_small_letters(name);
    return std::ranges::find(C_HEADERS_OF_OTHERS, small) != C_HEADERS_OF_OTHERS.end() ||
           std::ranges::any_of(C_FOLDERS_OF_OTHERS, [&](string_view folder) { return small.starts_with(folder); });
}

}  // namespace host::resolve
