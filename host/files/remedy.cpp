#include "host/files/remedy.h"

#include <cerrno>

namespace host {

std::string remedy_for(const std::error_code& failure) {
    std::string elsewhere = "choose another place";
    switch (failure.value()) {
    case ENOSPC:
    case EDQUOT:
        return "make room on its disk or " + elsewhere;
    case EACCES:
    case EPERM:
    case EROFS:
        return "get the permission to write there or " + elsewhere;
    case ENOENT:
        return "create its folder or " + elsewhere;
    default:
        return elsewhere;
    }
}

}  // namespace host
