#include "host/postgresql/client_options.h"

#include <memory>

namespace host::postgresql {

ClientOptions taken_from(PQconninfoOption* array) {
    struct Free {
        void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
    };
    const std::unique_ptr<PQconninfoOption, Free> owner(array);
    ClientOptions options;
    for (const PQconninfoOption* option = array; option != nullptr && option->keyword != nullptr; ++option) {
        if (option->val != nullptr) {
            options.emplace_back(option->keyword, option->val);
        }
    }
    return options;
}

}  // namespace host::postgresql
