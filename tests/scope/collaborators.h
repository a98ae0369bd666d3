// The component's collaborators as the tests of the component define them: they note each call and answer from a
// script. A test file is one named `test.ts` or below `test/`.
#pragma once

#include "storage/grounding_queries.h"
#include "workers/wiki/scope_tests.h"

#include <string>
#include <vector>

namespace storage {

/// The script of one test, and the calls that were made of it.
class Database {
  public:
    std::vector<ScopeFile> files;
    std::vector<ScopeSymbol> symbols;
    std::vector<InboundReference> inbound;
    std::vector<OutboundReference> outbound;
    std::vector<models::Text> resolved_languages;
    wiki::TestImports test_imports;
    std::string throws_at;  ///< the name of the call that throws a `Refusal`

    /// Notes a call; throws when the script says so.
    void note(const std::string& call, const std::string& arguments = {});

    std::vector<std::string> calls;
};

/// What a scripted failure throws.
struct Refusal {
    std::string call;
};

/// Where the collaborators that take no handle note their calls, if not null.
extern Database* listening;

}  // namespace storage
