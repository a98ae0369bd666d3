// What the command prints as JSON is what its schemas say. The validator is not ours.

#define VALIJSON_USE_EXCEPTIONS 1

#include "fixtures/scip_builder.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

using nlohmann::json;
using scip::ScipDocument;

class Schemas : public IndexedFolder {
  protected:
    // Files with everything that a page tells of: declarations with words and a source, uses, tests, name matches.
    Schemas() {
        using namespace scip;
        const std::string constant = symbol("`src/a.ts`/LIMIT.");
        folder.write("src/a.ts", "// Says what it is for.\nexport class One {}\nexport const LIMIT = 1;\n");
        folder.write("index.scip",
                     scip_file({ScipDocument("src/a.ts", "typescript")
                                    .defines(F, {1, 13, 16}, {1, 0, 2, 0})
                                    .describes(F, {.kind = 17, .signature = "function f()", .documentation = {"Runs."}})
                                    .defines(constant, {2, 13, 18})
                                    .refers(G),
                                ScipDocument("src/b.lua", "lua").defines(G, {0, 0, 1}).describes(G, {.kind = 17}),
                                ScipDocument("lib/c.ts", "typescript").refers(F).refers(constant).refers(G),
                                ScipDocument("test/a.test.ts", "typescript").refers(F).refers(symbol("gone")),
                                ScipDocument("/absolute.ts", "typescript")}));
        EXPECT_EQ(run("import index.scip --index index.db --checkout .").exit_code, 0);
    }

    [[nodiscard]] json printed(const std::string& command) const {
        const Outcome outcome = run(command + " --index index.db --format json");
        EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
        return json::parse(outcome.out);
    }

    // Of the index and one in which everything is another: every list has something in it.
    [[nodiscard]] json changes() const {
        folder.write("old/src/a.ts", "export class C {\n  m() {}\n}\nexport function f() {}\nexport function g() {}\n"
                                     "export function h() {}\n");
        folder.write("old/src/b.ts", "import { C, f, g } from './a';\nnew C().m(); f(); g();\n");
        folder.write("old/src/c.ts", "import './b';\nexport const c = 1;\n");
        folder.write("old/src/gone.ts", "export const gone = 1;\n");
        folder.write("old/src/d.test.ts", "import { f } from './a';\nf();\n");
        folder.write("new/src/a.ts", "export function f(a: number) {}\nexport function g() {}\n"
                                     "export function h() {}\nexport class D {}\n");
        folder.write("new/src/b.ts", "import { f, h } from './a';\nf(1); h();\nexport function b() {}\n");
        folder.write("new/src/e.ts", "import './b';\nexport const c = 1;\n");
        folder.write("new/src/f.ts", "import { b } from './b';\nb();\n");
        folder.write("new/src/d.test.ts", "import { f } from './a';\nf();\n");
        const Outcome outcome =
            shell("wiki-scope import old --index old.db && wiki-scope import new --index new.db >none && "
                  "wiki-scope diff old.db new.db --depth 2 --format json >changes");
        EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
        json changes = json::parse(folder.read("changes"));
        for (const auto& [key, value] : changes.items()) {
            EXPECT_FALSE(value.empty()) << key;
        }
        return changes;
    }

    // What is wrong with a document by the schema that a command prints; empty when nothing is.
    [[nodiscard]] std::string violation(const std::string& command, const json& document) {
        if (schema_of_ != command) {
            schema_of_ = command;
            schema_ = std::make_unique<valijson::Schema>();
            const json schema = json::parse(run(command + " --json-schema").out);
            valijson::SchemaParser(valijson::SchemaParser::kDraft7)
                .populateSchema(valijson::adapters::NlohmannJsonAdapter(schema), *schema_);
        }
        valijson::ValidationResults results;
        valijson::Validator validator;
        if (validator.validate(*schema_, valijson::adapters::NlohmannJsonAdapter(document), &results)) {
            return "";
        }
        valijson::ValidationResults::Error error;
        results.popError(error);
        std::string place;
        for (const std::string& part : error.context) {
            place += part;
        }
        return place + ": " + error.description;
    }

  private:
    std::string schema_of_;
    std::unique_ptr<valijson::Schema> schema_;
};

TEST_F(Schemas, SayWhatEachCommandPrints) {
    const std::string sections = " --only files,consumers,declarations,in-depth,dependencies,graph,seeds,outline";
    for (const std::string arguments :
         {"", " --only seeds", " none --only files", " lib test --total 1 --max-share 0", " --neighbours 0 --deep 0"}) {
        EXPECT_EQ(violation("page", printed("page src --checkout ." + arguments)), "") << arguments;
    }
    EXPECT_EQ(violation("page", printed("page . none --checkout ." + sections)), "");
    folder.write("wiki.toml", "[[page]]\ntitle = 'A'\npaths = ['src', 'none']\n");
    EXPECT_EQ(run("pages wiki.toml --out docs --checkout . --index index.db --format json").exit_code, 0);
    EXPECT_EQ(violation("page", json::parse(folder.read("docs/a.json"))), "");
    EXPECT_EQ(violation("files", printed("files")), "");
    EXPECT_EQ(violation("find", printed("find f")), "");
    EXPECT_EQ(violation("stats", printed("stats --check")), "");
    EXPECT_EQ(violation("diff", changes()), "");
}

// Every value of a whole output is of the type that the schema names, and no member is there that it does not name.
TEST_F(Schemas, RefuseWhatNoCommandPrints) {
    const std::string sections = " --only files,consumers,declarations,in-depth,dependencies,graph,seeds,outline";
    const json anything = {{"unknown", {nullptr}}};
    for (const auto& [command, document] :
         std::vector<std::pair<std::string, json>>{{"page", printed("page . none --checkout ." + sections)},
                                                   {"files", printed("files")},
                                                   {"find", printed("find f")},
                                                   {"stats", printed("stats")},
                                                   {"diff", changes()}}) {
        const json leaves = document.flatten();
        for (const auto& [place, leaf] : leaves.items()) {
            json broken = document;
            broken[json::json_pointer(place)] = anything;
            EXPECT_NE(violation(command, broken), "") << command << " " << place;
        }
        for (const auto& [key, value] : document.items()) {
            json broken = document;
            broken.erase(key);
            const bool is_whole_section = key == "graph" || key == "seeds" || key == "outline";
            EXPECT_EQ(violation(command, broken).empty(), is_whole_section) << command << " without " << key;
        }
        json more = document;
        more["unknown"] = 1;
        EXPECT_NE(violation(command, more), "") << command;
    }
}

}  // namespace
}  // namespace host
