#include "host/serve/server.h"

#include "host/serve/bounded_text.h"
#include "host/serve/completion.h"
#include "host/serve/page_prompt.h"
#include "host/serve/page_resource.h"
#include "host/serve/schema.h"
#include "host/serve/wiki_resource.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <utility>

namespace host::serve {

namespace {

// The supported versions of the protocol, newest first.
constexpr std::array<std::string_view, 4> VERSIONS{"2025-11-25", "2025-06-18", "2025-03-26", "2024-11-05"};

constexpr std::array<std::string_view, 8> LEVELS{"debug", "info",     "notice", "warning",
                                                 "error", "critical", "alert",  "emergency"};

constexpr const char* INSTRUCTIONS =
    "States facts about source files for authors of wiki pages. Call find_declarations or list_files to decide which "
    "files a page is about, then ground_page for these files, and write nothing that it does not state.";

Received progress_token(const Received& params) {
    const Received meta = object_parameter(params, "_meta");
    const auto token = meta.find("progressToken");
    if (token == meta.end()) {
        return nullptr;
    }
    if (!token->is_string() && !token->is_number_integer()) {
        throw bad_parameter("_meta.progressToken", "must be a string or an integer");
    }
    return *token;
}

// A list has only one page, so no cursor is valid.
std::string listed(const Received& params, const char* key, const Sent& list) {
    if (params.contains("cursor")) {
        throw bad_parameter("cursor", "there are no more pages");
    }
    return text_of({{key, list}});
}

std::string tool_result(const Sent& content, const std::string& structured, bool is_error) {
    return R"({"content":)" + text_of(content) + (structured.empty() ? "" : R"(,"structuredContent":)" + structured) +
           R"(,"isError":)" + (is_error ? "true" : "false") + "}";
}

Sent text_content(const std::string& text) {
    return {{"type", "text"}, {"text", text}};
}

std::string tool_result(const ToolAnswer& answer) {
    Sent content = Sent::array({text_content(answer.text)});
    if (!answer.remarks.empty()) {
        content.push_back(text_content(lines_of(answer.remarks)));
    }
    return tool_result(content, answer.structured, false);
}

std::string failed_tool(const std::string& reason) {
    return tool_result(Sent::array({text_content(reason.substr(0, LONGEST_REASON))}), "", true);
}

// Returns the result. Throws `TooLarge` when it does not fit into a message.
std::string fitting(std::string result) {
    constexpr std::size_t ROOM_FOR_ID = 2048;
    if (result.size() > LONGEST_MESSAGE - ROOM_FOR_ID) {
        throw TooLarge{};
    }
    return result;
}

constexpr const char* TOO_LARGE =
    "the answer is larger than a message may be (16 MiB); ask for fewer paths or sections, or set max_bytes";

}  // namespace

Server::Server(ServerOptions options, std::shared_ptr<MessageSink> out)
    : options_(std::move(options)), out_(std::move(out)),
      index_(options_.index,
             [this] { log(Level::INFO, options_.index->name() + ": replaced; serving the new index now"); }),
      context_{index_, options_.checkout, [this](std::span<const std::string> remarks) {
                   for (const std::string& remark : remarks) {
                       log(Level::WARNING, remark);
                   }
               }} {}

bool Server::run(MessageReader& in) {
    constexpr std::chrono::seconds PATIENCE(1);
    std::string line;
    while (true) {
        switch (in.next(line)) {
        case MessageReader::Outcome::LINE:
            take(line);
            break;
        case MessageReader::Outcome::TOO_LONG:
            out_->send(answer(nullptr, RpcError(ErrorCode::INVALID_REQUEST, "a message may have at most 16 MiB")));
            break;
        case MessageReader::Outcome::END:
            return calls_.finish(PATIENCE);
        }
    }
}

void Server::take(std::string_view line) {
    try {
        const Received received = parse(line);
        if (!received.is_array()) {
            take_message(received, out_);
            return;
        }
        if (received.empty()) {
            throw RpcError(ErrorCode::INVALID_REQUEST, "a batch must not be empty");
        }
        const auto batch = std::make_shared<Batch>(out_);
        for (const Received& value : received) {
            take_message(value, batch);
        }
    } catch (const RpcError& error) {
        out_->send(answer(nullptr, error));
    }
}

void Server::take_message(const Received& value, const std::shared_ptr<MessageSink>& answers) {
    try {
        const Message message = read_message(value);
        switch (message.kind) {
        case Message::Kind::REQUEST:
            request(message, answers);
            break;
        case Message::Kind::NOTIFICATION:
            notice(message);
            break;
        case Message::Kind::RESPONSE:  // ignored: the server sends no requests
            break;
        }
    } catch (const RpcError& error) {
        answers->send(answer(id_of(value), error));
    }
}

void Server::notice(const Message& message) {
    if (message.method == "notifications/cancelled" && message.params.contains("requestId")) {
        calls_.cancel(message.params["requestId"]);
    }
}

void Server::request(const Message& message, const std::shared_ptr<MessageSink>& answers) {
    if (!is_initialized_ && message.method != "initialize" && message.method != "ping") {
        throw RpcError(ErrorCode::INVALID_REQUEST, "not initialized; a session begins with initialize");
    }
    if (const std::string result = immediate_result(message); !result.empty()) {
        answers->send(answer(message.id, result));
        return;
    }
    Work work = work_of(message);
    if (!work) {
        throw RpcError(ErrorCode::METHOD_NOT_FOUND, message.method + ": no such method");
    }
    const auto call = std::make_shared<Call>(message.id, progress_token(message.params), answers, out_);
    if (!calls_.start(call, [this, work = std::move(work)](Call& running) { answer_with(work, running); })) {
        throw RpcError(ErrorCode::INVALID_REQUEST, "id: a request with this id has not been answered yet");
    }
}

std::string Server::immediate_result(const Message& message) {
    const auto& [kind, id, method, params] = message;
    if (method == "ping") {
        return "{}";
    }
    if (method == "initialize") {
        return initialize(params);
    }
    if (method == "logging/setLevel") {
        return set_level(params);
    }
    if (method == "tools/list") {
        Sent list = Sent::array();
        for (const Tool& tool : tools()) {
            list.push_back(tool.definition);
        }
        return listed(params, "tools", list);
    }
    if (method == "resources/list") {  // other pages come from the template
        return listed(params, "resources", resources_of(options_.wiki));
    }
    if (method == "resources/templates/list") {
        return listed(params, "resourceTemplates", Sent::array({page_template()}));
    }
    return method == "prompts/list" ? listed(params, "prompts", Sent::array({write_wiki_page_prompt()})) : "";
}

std::string Server::initialize(const Received& params) {
    if (is_initialized_) {
        throw RpcError(ErrorCode::INVALID_REQUEST, "already initialized");
    }
    const std::string& asked = text_parameter(params, "protocolVersion");
    const bool is_known = std::ranges::find(VERSIONS, asked) != VERSIONS.end();
    is_initialized_ = true;
    return text_of(
        {{"protocolVersion", is_known ? std::string_view(asked) : VERSIONS.front()},
         {"capabilities",
          {{"tools", Sent::object()},
           {"resources", Sent::object()},
           {"prompts", Sent::object()},
           {"completions", Sent::object()},
           {"logging", Sent::object()}}},
         {"serverInfo", {{"name", "wiki-scope"}, {"title", "Grounding of wiki pages"}, {"version", options_.version}}},
         {"instructions", INSTRUCTIONS}});
}

std::string Server::set_level(const Received& params) {
    const auto* const found = std::ranges::find(LEVELS, text_parameter(params, "level"));
    if (found == LEVELS.end()) {
        throw bad_parameter("level", "must be one of debug, info, notice, warning, error, critical, alert, emergency");
    }
    level_ = static_cast<Level>(found - LEVELS.begin());
    return "{}";
}

Server::Work Server::work_of(const Message& message) {
    const Received& params = message.params;
    if (message.method == "tools/call") {
        return tool_call(params);
    }
    if (message.method == "resources/read") {
        const std::string& uri = text_parameter(params, "uri");
        if (const pages::WikiPage* const page = wiki_page_at(options_.wiki, uri)) {
            return [this, uri, page](Call& call) { return read_wiki_page(uri, *page, context_, call); };
        }
        const PageRequest page = page_at(uri);
        return [this, uri, page](Call& call) { return read_page(uri, page, context_, call); };
    }
    if (message.method == "prompts/get") {
        if (const std::string& name = text_parameter(params, "name"); name != "write_wiki_page") {
            throw bad_parameter("name", "no such prompt: " + name);
        }
        const PageRequest page = page_to_write(object_parameter(params, "arguments"));
        return [this, page](Call& call) { return write_wiki_page(page, context_, call); };
    }
    if (message.method == "completion/complete") {
        const Completion completion = completion_of(params);
        return [this, completion](Call& call) { return completed(completion, context_, call); };
    }
    return {};
}

Server::Work Server::tool_call(const Received& params) {
    const std::string& name = text_parameter(params, "name");
    const auto tool = std::ranges::find(tools(), name, &Tool::name);
    if (tool == tools().end()) {
        throw bad_parameter("name", "no such tool: " + name);
    }
    const Received arguments = object_parameter(params, "arguments");
    return [this, tool, arguments](Call& call) {
        try {
            const ToolAnswer answer = tool->run(checked(arguments, tool->definition["inputSchema"]), context_, call);
            context_.warn(answer.remarks);
            return fitting(tool_result(answer));
        } catch (const TooLarge&) {
            return failed_tool(TOO_LARGE);
        } catch (const RpcError& wrong) {
            return failed_tool(std::string(wrong.what()) + "; correct the arguments, and call again");
        } catch (const std::exception& failure) {
            return failed_tool(options_.describe(failure));
        }
    };
}

void Server::answer_with(const Work& work, Call& call) {
    try {
        call.check();
        const std::string result = fitting(work(call));
        call.check();
        call.send(answer(call.id(), result));
    } catch (const Cancelled&) {  // the client expects no answer
    } catch (const RpcError& error) {
        call.send(answer(call.id(), error));
    } catch (const TooLarge&) {
        call.send(answer(call.id(), RpcError(ErrorCode::INTERNAL_ERROR, TOO_LARGE)));
    } catch (const std::bad_alloc&) {
        call.send(answer(call.id(), RpcError(ErrorCode::INTERNAL_ERROR, "out of memory; ask for less")));
    } catch (const std::exception& failure) {
        call.send(answer(call.id(), RpcError(ErrorCode::INTERNAL_ERROR, options_.describe(failure))));
    }
}

void Server::log(Level level, const std::string& text) {
    if (level >= level_) {
        out_->send(notification(
            "notifications/message",
            {{"level", LEVELS.at(static_cast<std::size_t>(level))}, {"logger", "wiki-scope"}, {"data", text}}));
    }
}

}  // namespace host::serve
