#include "host/serve/resource.h"

namespace host::serve {

RpcError no_such_resource(const std::string& uri, const std::string& reason) {
    return {ErrorCode::RESOURCE_NOT_FOUND, reason, {{"uri", uri}}};
}

std::string resource_contents(const std::string& uri, const std::string& markdown) {
    return text_of({{"contents", Sent::array({{{"uri", uri}, {"mimeType", "text/markdown"}, {"text", markdown}}})}});
}

}  // namespace host::serve
