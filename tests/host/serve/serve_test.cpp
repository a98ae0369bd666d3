// A session with the server: in this process, where time stands still, and as the command.

#include "host/indexing/report_json.h"
#include "host/serve/server.h"
#include "host/sqlite/sqlite_index.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace host::serve {
namespace {

// Keeps what the server sends, and can be waited for.
class Client : public MessageSink {
  public:
    void send(std::string_view message) override {
        const Received received = Received::parse(message);
        if (received.value("method", "") == "notifications/progress") {
            on_progress(received["params"]);
        }
        const std::scoped_lock lock(mutex_);
        received.contains("id") ? answers_[received["id"]] = received : Received();
        if (received.contains("method")) {
            notifications_.push_back(received);
        }
        arrived_.notify_all();
    }

    // The answer to a request; null when none comes.
    Received answer(const Received& id) {
        std::unique_lock lock(mutex_);
        arrived_.wait_for(lock, std::chrono::seconds(20), [&] { return answers_.contains(id); });
        return answers_.contains(id) ? answers_[id] : Received();
    }

    bool is_answered(const Received& id) {
        const std::scoped_lock lock(mutex_);
        return answers_.contains(id);
    }

    std::vector<Received> notifications() {
        const std::scoped_lock lock(mutex_);
        return notifications_;
    }

    std::function<void(const Received&)> on_progress = [](const Received&) {};

  private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::map<Received, Received> answers_;
    std::vector<Received> notifications_;
};

class Sizes : public MessageSink {
  public:
    void send(std::string_view message) override { sizes.push_back(message.size()); }

    std::vector<std::size_t> sizes;
};

class Serve : public IndexedFolder {
  protected:
    Serve() {
        folder.write("a.ts", "// Adds.\nexport function add() {}\n");
        folder.write("b.ts", "import { add } from './a'\nadd()\n");
        change("INSERT INTO meta VALUES('checkout', '" + folder / "" + "'), ('report', '" +
               to_json(indexing::ImportReport()) + "')");
        add<FileRow>({{1, "a.ts", "typescript"}, {2, "b.ts", "typescript"}});
        add<DeclarationRow>({{1, 1, "add", "add", "function", true, 2, 2, 1}});
        add<EdgeRow>({{2, 1, IMPORT, 1}});
    }

    // A session that has begun.
    void begin() {
        server = std::make_unique<Server>(
            ServerOptions{std::make_shared<SqliteIndex>(index), "", "1",
                          [](const std::exception& failure) { return std::string(failure.what()); }},
            client);
        ask("initialize", {{"protocolVersion", "2025-06-18"}});
    }

    Received start(const std::string& method, const Received& params) {
        server->take(Received{{"jsonrpc", "2.0"}, {"id", ++last_id}, {"method", method}, {"params", params}}.dump());
        return last_id;
    }
    Received ask(const std::string& method, const Received& params) { return client->answer(start(method, params)); }
    static Received call(const std::string& tool, const Received& arguments, const Received& token = nullptr) {
        Received params = {{"name", tool}, {"arguments", arguments}};
        token.is_null() ? Received() : params["_meta"]["progressToken"] = token;
        return params;
    }

    static Received completion(const std::string& type, const std::string& of, const std::string& argument,
                               const std::string& value) {
        return {{"ref", {{"type", type}, {type == "ref/prompt" ? "name" : "uri", of}}},
                {"argument", {{"name", argument}, {"value", value}}}};
    }

    std::shared_ptr<Client> client = std::make_shared<Client>();
    std::unique_ptr<Server> server;
    int last_id = 0;
};

TEST_F(Serve, AnswersWithTheBytesOfTheCommand) {
    begin();
    const std::vector<std::pair<Received, std::string>> cases{
        {call("ground_page", {{"paths", {"a.ts"}}}), "page a.ts"},
        {call("ground_page", {{"paths", {"a.ts", "none"}}, {"sections", {"seeds", "files"}}, {"max_tokens", 50}}),
         "page a.ts none --only seeds,files --max-tokens 50"},
        {call("ground_page", {{"paths", {"*.ts"}}, {"with_source", false}, {"total", 1.0}, {"test", {"b.ts"}}}),
         "page '*.ts' --no-source --total 1 --test b.ts"},
        {call("ground_page", {{"paths", {"."}}, {"format", "json"}, {"max_share", 0.5}, {"deep", 0}}),
         "page . --format json --max-share 0.5 --deep 0"},
        {call("ground_page", {{"paths", {"."}}, {"format", "json"}, {"sections", {"outline"}}}),
         "page . --format json --only outline"},
        {call("find_declarations", {{"name", "ad"}}), "find ad"},
        {call("list_files", {{"not_test", {"a.ts"}}}), "files --not-test a.ts"},
        {call("list_files", {{"paths", {"b.ts"}}}), "files b.ts"},
        {call("index_stats", Received::object()), "stats"},
    };
    for (const auto& [params, command] : cases) {
        const Received answer = ask("tools/call", params);
        const Outcome expected = run(command + " --index '" + index + "'");
        ASSERT_EQ(expected.exit_code, 0) << command << expected.err;
        EXPECT_EQ(answer["result"]["content"][0]["text"], expected.out) << command;
        EXPECT_EQ(answer["result"]["isError"], false);
        std::string said;
        for (const Received& remark : answer["result"]["structuredContent"].value("remarks", Received::array())) {
            said += "wiki-scope: " + remark.get<std::string>() + "\n";
        }
        EXPECT_EQ(said, expected.err);
        const Received& structured = answer["result"]["structuredContent"];
        if (params["name"] == "ground_page") {
            EXPECT_EQ(structured.size(), 2U) << structured;  // nothing of the text again
            EXPECT_EQ(structured["missing"].size(), command.find("none") == std::string::npos ? 0U : 1U);
        } else {
            EXPECT_EQ(structured, Received::parse(run(command + " --format json --index '" + index + "'").out));
        }
    }
    const Received resource = ask("resources/read", {{"uri", "scope://page/%61.ts"}});
    EXPECT_EQ(resource["result"]["contents"][0]["text"], run("page a.ts --index '" + index + "'").out);
    const Received prompt = ask("prompts/get", {{"name", "write_wiki_page"},
                                                {"arguments", {{"paths", " a.ts\nb.ts "}, {"max_bytes", "3000"}}}});
    const std::string text = prompt["result"]["messages"][0]["content"]["text"];
    EXPECT_TRUE(text.ends_with("\n---\n\n" + run("page a.ts b.ts --max-bytes 3000 --index '" + index + "'").out));
}

TEST_F(Serve, RejectsInvalidRequestsAndParameters) {
    begin();
    const std::string deep(100, '[');
    const std::vector<std::pair<std::string, std::string>> lines{
        {"{", "-32700 null not JSON"},
        {"\"\xFF\"", "-32700 null not JSON"},
        {"7", "-32600 null a message must be an object"},
        {deep, "-32600 null a message may be nested"},
        {"[]", "-32600 null a batch"},
        {R"({"id":1,"method":"ping"})", "-32600 1 jsonrpc"},
        {R"({"jsonrpc":"2.0","id":"x"})", "-32600 \"x\" method: is missing"},
        {R"({"jsonrpc":"2.0","id":"x","method":7})", "-32600 \"x\" method: must"},
        {R"({"jsonrpc":"2.0","id":null,"method":"ping"})", "-32600 null id"},
        {R"({"jsonrpc":"2.0","method":"ping","id":")" + std::string(257, 'x') + "\"}", "-32600 null id"},
        {R"({"jsonrpc":"2.0","id":"x","method":"ping","params":[]})", "-32602 \"x\" params"},
    };
    for (const auto& [line, expected] : lines) {
        Received got;
        class Last : public MessageSink {
          public:
            explicit Last(Received& to) : to_(to) {}
            void send(std::string_view message) override { to_ = Received::parse(message); }

          private:
            Received& to_;
        };
        Server(ServerOptions{std::make_shared<SqliteIndex>(index), "", "1", {}}, std::make_shared<Last>(got))
            .take(line);
        const std::string said =
            got["error"]["code"].dump() + " " + got["id"].dump() + " " + got["error"]["message"].get<std::string>();
        EXPECT_TRUE(said.starts_with(expected)) << line << " -> " << said;
    }
    const std::vector<std::tuple<std::string, Received, int, std::string>> requests{
        {"none", Received::object(), -32601, "none: no such method"},
        {"initialize", {{"protocolVersion", "1"}}, -32600, "already initialized"},
        {"tools/list", {{"cursor", "x"}}, -32602, "cursor: there are no more pages"},
        {"logging/setLevel", {{"level", "loud"}}, -32602, "level: must be one of"},
        {"tools/call", Received::object(), -32602, "name: is missing"},
        {"tools/call", call("none", Received::object()), -32602, "name: no such tool: none"},
        {"tools/call", call("ground_page", 7), -32602, "arguments: must be an object"},
        {"tools/call", call("index_stats", Received::object(), 1.5), -32602, "_meta.progressToken: must"},
        {"resources/read", {{"uri", "file:///etc/passwd"}}, -32002, "no such resource"},
        {"resources/read", {{"uri", "scope://page/../a.ts"}}, -32002, "../a.ts: not in the index"},
        {"resources/read", {{"uri", "scope://page/%4"}}, -32002, "% must be written as %25"},
        {"resources/read", {{"uri", "scope://page/a.ts%00"}}, -32002, "a path may have at most 4096 bytes and no NUL"},
        {"resources/read", {{"uri", "scope://page/" + std::string(1'000'000, 'x')}}, -32002, "a path may have at most"},
        {"prompts/get", {{"name", "write_wiki_page"}}, -32602, "paths: is missing"},
        {"prompts/get",
         {{"name", "write_wiki_page"}, {"arguments", {{"paths", "c.ts"}}}},
         -32602,
         "paths: c.ts: not in"},
        {"prompts/get",
         {{"name", "write_wiki_page"}, {"arguments", {{"paths", "a"}, {"max_bytes", "1k"}}}},
         -32602,
         "max_bytes: must be an integer of at least 0"},
        {"completion/complete", Received::object(), -32602, "type: is missing"},
        {"completion/complete", completion("ref/tool", "", "", ""), -32602, "ref.type: must be one of"},
        {"completion/complete", completion("ref/resource", "a://{b}", "path", ""), -32602, "ref.uri: no such template"},
        {"completion/complete", completion("ref/prompt", "none", "paths", ""), -32602, "ref.name: no such prompt"},
        {"completion/complete", completion("ref/prompt", "write_wiki_page", "path", ""), -32602, "argument.name: no"},
    };
    for (const auto& [method, params, code, message] : requests) {
        const Received error = ask(method, params).value("error", Received::object());
        EXPECT_EQ(error.value("code", 0), code) << method << params;
        EXPECT_TRUE(error.value("message", "").starts_with(message)) << error;
        EXPECT_LT(error.dump().size(), 20'000U) << message;
    }
}

TEST_F(Serve, ReturnsToolFailuresAndBadArgumentsAsResults) {
    begin();
    const std::vector<std::pair<Received, std::string>> cases{
        {call("ground_page", Received::object()), "paths: is missing; correct the arguments, and call again"},
        {call("ground_page", {{"paths", Received::array()}}), "paths: must have a length of at least 1;"},
        {call("ground_page", {{"paths", {"a.ts", 5}}}), "paths[1]: must be a string"},
        {call("find_declarations", {{"nmae", "a"}}), "nmae: unknown parameter; the parameters are name, limit;"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"total", -1}}), "total: must be at least 0"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"total", 1.5}}), "total: must be an integer"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"total", 1e300}}), "total: must be at most"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"sections", {"x"}}}), "sections[0]: must be"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"test", {"{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}"}}}),
         "test[0]: "},
        {call("ground_page", {{"paths", {"a.ts"}}, {"format", "json"}, {"max_bytes", 9}}),
         "max_bytes: applies to Markdown only"},
        {call("find_declarations", {{"name", std::string("a\0", 2)}}), "name: must not contain a NUL"},
        {call("index_stats", {{std::string(1'000'000, 'x'), 1}}), "xxx"},
        {call("ground_page", {{"paths", {"c.ts"}}}), "c.ts: not in the index; did you mean a.ts?"},
        {call("ground_page", {{"paths", {"a.ts", "zzz"}}, {"strict", true}}), "zzz: not in the index"},
        {call("ground_page", {{"paths", {"a.ts"}}, {"max_bytes", 10}}), "too few bytes: "},
        {call("list_files", {{"paths", {"zzz"}}}), "zzz: not in the index"},
    };
    for (const auto& [params, text] : cases) {
        const Received result = ask("tools/call", params)["result"];
        EXPECT_EQ(result["isError"], true) << params;
        EXPECT_TRUE(result["content"][0]["text"].get<std::string>().starts_with(text)) << result;
        EXPECT_LT(result.dump().size(), 20'000U) << text;
    }
    const Received none = ask("tools/call", call("find_declarations", {{"name", "zzz"}}))["result"];
    EXPECT_EQ(none["structuredContent"]["count"], 0);
    EXPECT_EQ(none["isError"], false);
}

TEST_F(Serve, RejectsPageRequestsThatTheCommandRejects) {
    begin();
    for (const auto& [name, value, says] : std::vector<std::tuple<std::string, Received, std::string>>{
             {"with_source", false, "with_source: applies to Markdown only"},
             {"max_share", 1.01, "max_share: must be at most 1"},
         }) {
        const Received asked = {{"paths", {"a.ts"}}, {"format", "json"}, {name, value}};
        EXPECT_NE(ask("tools/call", call("ground_page", asked)).dump().find(says), std::string::npos) << name;
    }
}

TEST_F(Serve, CompletesPathsUpToTheNextFolderAndArgumentsOfThePrompt) {
    add<FileRow>({{3, "src/app.ts"}, {4, "src/api/one.ts"}, {5, "src/api/two.ts"}, {6, "src/b.ts"}});
    change("WITH RECURSIVE new(id) AS (VALUES(100) UNION ALL SELECT id + 1 FROM new WHERE id < 219) "
           "INSERT INTO files(id, path) SELECT id, 'many/' || id FROM new");
    begin();
    const auto values = [&](const Received& params) {
        return ask("completion/complete", params)["result"]["completion"];
    };
    const auto of_page = [&](const std::string& begun) {
        return values(completion("ref/resource", "scope://page/{+path}", "path", begun));
    };
    EXPECT_EQ(of_page(""),
              Received::parse(R"({"values": ["a.ts", "b.ts", "many/", "src/"], "total": 4, "hasMore": false})"));
    EXPECT_EQ(of_page("src/a")["values"], Received({"src/api/", "src/app.ts"}));
    EXPECT_EQ(of_page("src/api/")["values"], Received({"src/api/one.ts", "src/api/two.ts"}));
    EXPECT_EQ(of_page(std::string("src/\0", 5))["total"], 0);
    EXPECT_EQ(of_page("many/")["values"].size(), 100U);
    EXPECT_EQ(of_page("many/")["total"], 120);
    EXPECT_EQ(of_page("many/")["hasMore"], true);
    EXPECT_EQ(values(completion("ref/prompt", "write_wiki_page", "paths", "a.ts\nsrc/ap"))["values"],
              Received({"a.ts\nsrc/api/", "a.ts\nsrc/app.ts"}));
    EXPECT_EQ(values(completion("ref/prompt", "write_wiki_page", "max_bytes", "16"))["values"], Received({"16000"}));
}

TEST_F(Serve, SuggestsOnlyLimitsThatItAccepts) {
    begin();
    for (const auto& [last, advice] :
         {std::pair("10000", "a limit of 10000 lists all"), std::pair("10001", "a longer name finds fewer")}) {
        change(std::string(
                   "WITH RECURSIVE new(id) AS (SELECT max(id) + 1 FROM symbols UNION ALL SELECT id + 1 FROM new ") +
               "WHERE id <= " + last +
               ") INSERT INTO symbols SELECT id, 1, 'many', 'many', 'function', 1, 3, 3, 0 FROM new");
        const Received found = ask("tools/call", call("find_declarations", {{"name", "many"}, {"limit", 1}}))["result"];
        EXPECT_TRUE(found["content"][1]["text"].get<std::string>().ends_with(advice)) << found;
    }
}

TEST_F(Serve, ServesAReplacedIndexAndReportsIt) {
    begin();
    ask("logging/setLevel", {{"level", "info"}});
    const Received find = call("find_declarations", {{"name", "added"}});
    EXPECT_EQ(ask("tools/call", find)["result"]["structuredContent"]["count"], 0);
    std::filesystem::copy(index, folder / "new.db");
    SqliteConnection(folder / "new.db", SqliteConnection::Mode::CREATE)
        .execute("INSERT INTO symbols VALUES(2, 1, 'added', 'added', 'function', 1, 3, 3, 0)");
    std::filesystem::rename(folder / "new.db", index);
    EXPECT_EQ(ask("tools/call", find)["result"]["structuredContent"]["count"], 1);
    EXPECT_EQ(client->notifications().back()["params"]["data"], index + ": replaced; serving the new index now");
    std::filesystem::remove(index);
    EXPECT_EQ(ask("tools/call", find)["result"]["content"][0]["text"], index + ": no such index");
    EXPECT_EQ(ask("resources/read", {{"uri", "scope://page/a.ts"}})["error"],
              (Received{{"code", -32603}, {"message", index + ": no such index"}}));
}

TEST_F(Serve, ReportsProgressAndLeavesCancelledCallsUnanswered) {
    begin();
    std::vector<Received> progress_seen;
    std::promise<void> is_cancelled;
    client->on_progress = [&](const Received& progress) {
        progress_seen.push_back(progress);
        if (progress["progressToken"] == "stop") {
            server->take(Received{
                {"jsonrpc", "2.0"}, {"method", "notifications/cancelled"}, {"params", {{"requestId", last_id}}}}
                             .dump());
            is_cancelled.set_value();
        }
    };
    ask("tools/call", call("ground_page", {{"paths", {"a.ts"}}}, 7));
    ASSERT_EQ(progress_seen.size(), 3U);
    EXPECT_EQ(progress_seen[0],
              Received::parse(R"({"progressToken":7,"progress":1,"total":3,"message":"found 1 file"})"));
    EXPECT_EQ(progress_seen[1]["message"], "read 1 reference");
    EXPECT_EQ(progress_seen[2]["progress"], 3);

    const Received cancelled = start("tools/call", call("ground_page", {{"paths", {"a.ts"}}}, "stop"));
    is_cancelled.get_future().wait();
    server.reset();  // waits for the end of the call
    EXPECT_EQ(progress_seen.size(), 4U);
    EXPECT_FALSE(client->is_answered(cancelled));
}

TEST_F(Serve, ChecksForCancellationInLoopsOverRows) {
    IndexConnections connections(std::make_shared<SqliteIndex>(index), [] {});
    EXPECT_THROW(connections.borrow([] { throw Cancelled{}; }, [](storage::Database& db) { db.check_interrupt(); }),
                 Cancelled);
}

TEST_F(Serve, AnswersShortCallsWhileLongOnesRun) {
    change("UPDATE symbols SET uses = 1000000");
    begin();
    std::atomic<bool> is_over = false;
    std::atomic<unsigned> waiting = 0;
    client->on_progress = [&](const Received& progress) {
        if (progress["progress"] == 2) {
            ++waiting;
            for (int i = 0; i < 20'000 && !is_over; ++i) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    };
    const unsigned cores = std::max(std::thread::hardware_concurrency(), 1U);
    std::vector<Received> large;
    constexpr unsigned MANY = 1000;
    const std::vector<std::string> patterns(11, "b*");
    const std::vector<Received> pages{
        {{"paths", {"a.ts"}}}, {{"paths", patterns}}, {{"paths", {"b.ts"}}, {"test", patterns}}};
    for (unsigned i = 0; i < MANY; ++i) {
        large.push_back(start("tools/call", call("ground_page", pages[i % pages.size()], i)));
    }
    EXPECT_EQ(ask("tools/call", call("ground_page", {{"paths", {"b.ts"}}}))["result"]["isError"], false);
    EXPECT_LE(waiting, cores);
    is_over = true;
    for (const Received& id : large) {
        EXPECT_EQ(client->answer(id)["result"]["isError"], false);
    }
}

TEST_F(Serve, EndsWithItsInputAndAtOnceOnSigterm) {
    folder.write("in", R"({"jsonrpc":"2.0","id":0,"method":"tools/list"})"
                       "\n"
                       R"([{"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"1999-01-01"}},)"
                       R"({"jsonrpc":"2.0","method":"notifications/initialized"},)"
                       R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"find_declarations",)"
                       R"("arguments":{"name":"add"}}},{"jsonrpc":"2.0","id":2,"result":{}}])"
                       "\r\n \n" +
                           std::string(LONGEST_MESSAGE + 1, 'x') + "\n" +
                           R"({"jsonrpc":"2.0","id":3,"method":"ping"})");
    const Outcome session = run("serve --index index.db < in");
    EXPECT_EQ(session.exit_code, 0);
    EXPECT_EQ(session.err, "");
    std::vector<Received> said;
    std::istringstream lines(session.out);
    for (std::string line; std::getline(lines, line);) {
        said.push_back(Received::parse(line));
    }
    std::ranges::sort(said, {}, [](const Received& each) { return each.is_array() ? "" : each["id"].dump(); });
    ASSERT_EQ(said.size(), 4U) << session.out;
    EXPECT_EQ(said[0].size(), 2U);
    EXPECT_EQ(said[0][0]["result"]["protocolVersion"], "2025-11-25");
    EXPECT_EQ(said[0][1]["result"]["structuredContent"]["count"], 1);
    EXPECT_EQ(said[1]["error"]["code"], -32600);
    EXPECT_EQ(said[2]["id"], 3);
    EXPECT_EQ(said[3]["error"]["message"], "a message may have at most 16 MiB");

    EXPECT_EQ(shell("mkfifo in.fifo && exec 3<>in.fifo && "
                    "timeout -k 9 .2 wiki-scope serve --index index.db <&3")
                  .exit_code,
              124);  // and not 137, of SIGKILL
    EXPECT_EQ(run("serve --index none.db < in").err,
              "wiki-scope: none.db: no such index; make one with: wiki-scope import FOLDER --index none.db\n");
    EXPECT_EQ(run("serve --index index.db --checkout none < in").exit_code, 1);
}

TEST(Batch, SplitsItsAnswersIntoArraysThatFitIntoMessages) {
    const auto out = std::make_shared<Sizes>();
    {
        Batch batch(out);
        for (const std::size_t size : {LONGEST_MESSAGE / 2, LONGEST_MESSAGE / 2 - 3, std::size_t{9}}) {
            batch.send(std::string(size, '7'));
        }
    }
    EXPECT_EQ(out->sizes, (std::vector<std::size_t>{LONGEST_MESSAGE, 11}));
}

TEST(MessageReader, ReturnsLinesAndSkipsThoseThatAreTooLong) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const std::string text = "12345678\n\n\r\n123456789\nab\r\n" + std::string(40, 'x') + "\n" + std::string(9, 'y');
    ASSERT_EQ(write(ends[1], text.data(), text.size()), std::ssize(text));
    close(ends[1]);
    MessageReader reader(ends[0], 8);
    std::string got;
    std::string line;
    for (MessageReader::Outcome outcome{}; (outcome = reader.next(line)) != MessageReader::Outcome::END;) {
        got += outcome == MessageReader::Outcome::LINE ? line + "," : "long,";
    }
    EXPECT_EQ(got, "12345678,long,ab\r,long,long,");
    close(ends[0]);
}

}  // namespace
}  // namespace host::serve
