// The tools of the server.
#pragma once

#include "host/page/requested_page.h"
#include "host/serve/call.h"
#include "host/serve/index_connections.h"
#include "host/serve/json_rpc.h"

#include <cstddef>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host::serve {

/// What every tool works with: the index, the checkout and a channel for warnings.
struct ToolContext {
    IndexConnections& index;
    const std::string& checkout;  ///< empty for the result of `source_folder`
    /// Sends remarks about an answer to the client as warnings.
    std::function<void(std::span<const std::string> remarks)> warn;
};

/// The most bytes of a path or a name.
inline constexpr std::size_t LONGEST_PATH = 4096;

struct ToolAnswer {
    std::string text;                       ///< the output of the corresponding command
    std::string structured;                 ///< one line of JSON that conforms to the tool's output schema
    std::vector<std::string> remarks = {};  ///< what the command reports on standard error, one line each
};

/// A failure of a tool, with a message of one or more lines for the model that called it.
class ToolFailure : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

/// Runs a tool. `arguments` conform to its input schema. Throws `RpcError` for arguments that a schema cannot exclude,
/// `ToolFailure`, `Cancelled`, `TakesLong`, `TooLarge`, and what the index throws.
using RunTool = ToolAnswer (*)(const Received& arguments, const ToolContext& context, const Call& call);

struct Tool {
    std::string name;
    Sent definition;  ///< the entry of `tools/list`
    RunTool run;
};

/// Returns all tools in the order in which they are listed.
std::span<const Tool> tools();

/// Returns JSON on one line: removes the line ends, which must stand between values only.
std::string one_line(std::string json);

/// Joins remarks to one text, one a line. The last line has no end.
std::string lines_of(std::span<const std::string> remarks);

/// Returns the rules that the parameters `test` and `not_test` state. Throws `RpcError` for an invalid pattern.
std::vector<PathRule> test_rules(const Received& arguments);

/// Returns whether there are so many patterns to match against the files of the index that the call is a long one.
bool asks_for_many_patterns(std::span<const std::string> paths, std::span<const PathRule> tests);

/// Returns the schema of an optional list of paths or patterns.
Sent path_list(const std::string& description);

/// Returns the definition of a tool that only reads.
Sent tool_definition(const std::string& name, const std::string& title, const std::string& description,
                     const Sent& input, const Sent& output);

/// Returns the schema of an object with these members and no others.
Sent object_schema(const Sent& members, const std::vector<std::string>& required = {});

Tool ground_page_tool();
Tool find_declarations_tool();
Tool list_files_tool();
Tool index_stats_tool();
Tool changes_tool();

/// Checks the arguments of `ground_page` and returns the page that they request. Throws `RpcError` that names the
/// field.
PageRequest page_request(const Received& arguments);

/// Returns whether a page of these files of the index reads so much that its call is a long one.
bool is_long_page(storage::Database& db, std::span<const std::string> files);

/// Returns the requested page. Throws what `RunTool` throws.
ToolAnswer grounded(const PageRequest& request, const ToolContext& context, const Call& call);

}  // namespace host::serve
