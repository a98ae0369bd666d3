// Writers and readers of one server, whose backends are killed meanwhile: tools/with-postgresql server_load SECONDS
//
// Eight import and eight print pages, over twenty repositories, each time as a program of its own. Every page is that
// of one import or a clear error, and at the end each repository is as its last import has left it.

#include "fixtures/generated_repository.h"
#include "fixtures/temporary_folder.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/schema.h"
#include "tests/host/locations.h"

#include <csignal>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using host::TemporaryFolder;
using host::postgresql::Address;
using host::postgresql::Connection;
using host::postgresql::Parameters;
using host::postgresql::PostgresqlError;
using host::postgresql::Rows;

constexpr std::size_t REPOSITORIES = 20;
constexpr std::size_t WRITERS = 8;
constexpr std::size_t READERS = 8;
constexpr std::array SHAPES{bench::Repository{40, 10, 20, 2, 10, 10}, bench::Repository{60, 8, 30, 1, 20, 10},
                            bench::Repository{80, 5, 10, 3, 5, 20}};
const std::string SERVER = "postgresql:///loaded";

void require(bool holds, const std::string& what) {
    if (!holds) {
        std::cerr << "server_load: " << what << "\n";
        std::_Exit(1);
    }
}

// What has been counted on all threads.
class Counts {
  public:
    void add(const std::string& what) {
        const std::scoped_lock lock(mutex_);
        ++counts_[what];
    }
    void print() const {
        for (const auto& [what, count] : counts_) {
            std::cout << std::setw(6) << count << "  " << what << "\n";
        }
    }

  private:
    std::mutex mutex_;
    std::map<std::string, int> counts_;
};

// One of the twenty.
struct Repository {
    std::mutex mutex;                // held while it is imported into
    std::set<std::size_t> versions;  // of which it may be: of one, unless an import could not tell how it ended
};

class Load {
  public:
    explicit Load(std::chrono::seconds time) : end_(std::chrono::steady_clock::now() + time) {
        const std::string file = "--index '" + folder_ / "expected.db" + "'";
        for (std::size_t version = 0; version < SHAPES.size(); ++version) {
            write_scip(SHAPES.at(version), scip(version));
            require(run("import '" + scip(version) + "' " + file, 0).empty(), "an import into a file");
            run("page . --checkout '" + folder_ / "" + "' " + file, 0);
            pages_.push_back(folder_.read("out0"));
        }
        for (std::size_t number = 0; number < REPOSITORIES; ++number) {
            require(run(import(number, 0), 0).empty(), "an import before the load");
            repositories_.at(number).versions = {0};
        }
    }

    void run_all() {
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < WRITERS + READERS; ++thread) {
            threads.emplace_back([this, thread] {
                std::mt19937 random(static_cast<std::uint32_t>(thread));
                while (std::chrono::steady_clock::now() < end_) {
                    thread < WRITERS ? write(random, thread) : read(random, thread);
                }
            });
        }
        kill_backends();
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    // Each repository is as it must be, and after one more import nothing is left of those before.
    void check() {
        wait_for_server();
        for (std::size_t number = 0; number < REPOSITORIES; ++number) {
            require(run(page(number), 0).empty(), "a page after the load");
            const auto version =
                static_cast<std::size_t>(std::ranges::find(pages_, folder_.read("out0")) - pages_.begin());
            require(repositories_.at(number).versions.contains(version), "a repository has lost its last import");
            require(run(import(number, 1), 0).empty(), "an import after the load");
        }
        Connection connection{Address(SERVER)};
        for (const std::string table : {"files", "symbols", "edges", "notes", "languages", "resolutions"}) {
            Rows rows(connection, "SELECT count(DISTINCT (repository, snapshot)) FROM wiki_scope." + table, {});
            require(rows.step() && rows.integer(0) == REPOSITORIES, "rows of an old snapshot are left in " + table);
            rows.step();
        }
        counts_.print();
    }

  private:
    // It may have crashed a moment ago.
    static void wait_for_server() {
        for (int tries = 0;; ++tries) {
            try {
                Connection(Address(SERVER)).execute("SELECT 1");
                return;
            } catch (const PostgresqlError& error) {
                require(tries < 300, error.what());
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        }
    }

    [[nodiscard]] std::string scip(std::size_t version) const { return folder_ / (std::to_string(version) + ".scip"); }

    static std::string index(std::size_t number) {
        return " --index " + SERVER + " --repository r" + std::to_string(number);
    }
    [[nodiscard]] std::string import(std::size_t number, std::size_t version) const {
        return "import '" + scip(version) + "'" + index(number);
    }
    [[nodiscard]] std::string page(std::size_t number) const {
        return "page . --checkout '" + folder_ / "" + "'" + index(number);
    }

    // Runs a command; the line of its failure, or nothing.
    std::string run(const std::string& command, std::size_t thread) const {
        const std::string out = "out" + std::to_string(thread);
        const std::string err = "err" + std::to_string(thread);
        const std::string line =
            host::finding_command("wiki-scope " + command + " >'" + folder_ / out + "' 2>'" + folder_ / err + "'");
        if (std::system(line.c_str()) == 0) {  // NOLINT(cert-env33-c): a test of a command
            return "";
        }
        // Behind what is remarked of a page, if that was read before.
        std::string said = folder_.read(err);
        said.pop_back();
        said.erase(0, said.find_last_of('\n') + 1);
        require(said.starts_with("wiki-scope: postgresql:///loaded") && folder_.read(out).empty(),
                "a failure is a line that names the server: " + folder_.read(err));
        return said;
    }

    // Counts failures by what is wrong, wherever it was.
    void count(const std::string& what, std::string failure) {
        failure = std::regex_replace(failure, place_, "");
        counts_.add(what + (failure.empty() ? "" : " failed:" + failure));
    }

    void write(std::mt19937& random, std::size_t thread) {
        const std::size_t number = random() % REPOSITORIES;
        Repository& repository = repositories_.at(number);
        const std::unique_lock lock(repository.mutex, std::try_to_lock);
        if (!lock) {
            return;
        }
        const std::size_t version = random() % SHAPES.size();
        const std::string failure = run(import(number, version), thread);
        count("imports", failure);
        if (failure.empty()) {
            repository.versions = {version};
        } else if (failure.find("is not known") != std::string::npos) {
            repository.versions.insert(version);
        }
    }

    void read(std::mt19937& random, std::size_t thread) {
        const std::string failure = run(page(random() % REPOSITORIES), thread);
        count("pages", failure);
        const bool is_whole = std::ranges::count(pages_, folder_.read("out" + std::to_string(thread))) == 1;
        require(!failure.empty() || is_whole, "a page is that of no import");
    }

    // Now and then a backend is killed so hard that the whole server starts anew.
    void kill_backends() {
        constexpr int HARD = 50;
        std::mt19937 random(99);
        for (int count = 1; std::chrono::steady_clock::now() < end_; ++count) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20 + random() % 60));
            try {
                Connection connection{Address(SERVER)};
                Rows victim(connection,
                            "SELECT pid, CASE WHEN $1 = 0 THEN pg_terminate_backend(pid) END FROM pg_stat_activity "
                            "WHERE datname = 'loaded' AND pid <> pg_backend_pid() ORDER BY random() LIMIT 1",
                            Parameters().integer(count % HARD == 0 ? 1 : 0));
                const auto pid = victim.step() ? static_cast<pid_t>(victim.integer(0)) : 0;
                if (pid > 0 && count % HARD == 0) {
                    kill(pid, SIGKILL);
                }
                if (pid > 0) {
                    counts_.add(count % HARD == 0 ? "crashes of the server" : "backends ended");
                }
            } catch (const PostgresqlError&) {  // it is starting anew
            }
        }
    }

    const TemporaryFolder folder_;
    const std::chrono::steady_clock::time_point end_;
    std::vector<std::string> pages_;  // of each version
    std::array<Repository, REPOSITORIES> repositories_;
    Counts counts_;
    const std::regex place_{"^wiki-scope: [^ ]*|connection to server [a-z ]*\"[^\"]*\" failed:|"
                            "; the index of .* is as it was before"};  // in failures
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: server_load SECONDS\n";
        return 2;
    }
    Connection(Address("postgresql:///postgres")).execute("CREATE DATABASE loaded");
    {
        Connection connection{Address(SERVER)};
        host::postgresql::migrate(connection);
    }
    Load load{std::chrono::seconds(std::atoi(argv[1]))};
    load.run_all();
    load.check();
    return 0;
}
