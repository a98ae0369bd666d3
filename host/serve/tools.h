// What clients may have done: the tools of the server.
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

/// What a tool works with, for all of its calls.
struct Workplace {
    IndexConnections& index;
    const std::string& checkout;  ///< empty for what `source_folder` finds
    /// Tells the client what leaves an answer in doubt.
    std::function<void(std::span<const std::string> remarks)> warn;
};

/// How many bytes a path or a name has at most.
inline constexpr std::size_t LONGEST_PATH = 4096;

struct ToolAnswer {
    std::string text;                       ///< what the command of the same purpose prints
    std::string structured;                 ///< JSON on one line, by the tool's output schema
    std::vector<std::string> remarks = {};  ///< what the command says beside it, a line each
};

/// A tool's own failure, for the model that called it: one line or more.
class ToolFailure : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

/// `arguments` are as the schema asks for. Throws `RpcError` for those that it cannot tell to be wrong, `ToolFailure`, `Cancelled`, and what the
/// index throws.
using RunTool = ToolAnswer (*)(const Received& arguments, const Workplace& workplace, const Call& call);

struct Tool {
    std::string name;
    Sent definition;  ///< as `tools/list` gives it
    RunTool run;
};

/// All tools, in the order in which they are listed.
std::span<const Tool> tools();

/// The text without its line ends: JSON in which these only stand between values is the same as before.
std::string one_line(std::string json);

/// The remarks as one text, without an end of the last line.
std::string lines_of(std::span<const std::string> remarks);

/// The rules that the parameters `test` and `not_test` give. Throws `RpcError` for what is no pattern.
std::vector<PathRule> test_rules(const Received& arguments);

/// Whether so many patterns are held against the files of the index that short calls are not to wait for it.
bool asks_for_many_patterns(std::span<const std::string> paths, std::span<const PathRule> tests);

/// The schema of a list of paths or patterns, which may be left out.
Sent path_list(const std::string& description);

/// The definition of a tool that only reads what the server has.
Sent tool_definition(const std::string& name, const std::string& title, const std::string& description,
                     const Sent& input, const Sent& output);

/// The schema of an object with these members.
Sent object_schema(const Sent& members, const std::vector<std::string>& required = {});

Tool ground_page_tool();
Tool find_declarations_tool();
Tool list_files_tool();
Tool index_stats_tool();

/// The page that these arguments of `ground_page` ask for, once they are checked. Throws `RpcError` that names the field.
PageRequest page_request(const Received& arguments);

/// The page that is asked for. Throws as `RunTool` does.
ToolAnswer grounded(const PageRequest& request, const Workplace& workplace, const Call& call);

}  // namespace host::serve
