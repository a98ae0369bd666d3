#include "host/indexing/making.h"

#include "host/git/references.h"
#include "host/index/notes.h"
#include "host/indexing/index_writer.h"
#include "host/indexing/references.h"
#include "host/indexing/report_json.h"
#include "host/indexing/rules_of_uses.h"
#include "host/rules/test_paths.h"
#include "host/summary/shared_summaries.h"

#include <cstddef>

namespace host::indexing {

namespace {

void write_notes(RowWriter& out, const Extraction& extraction, const std::vector<PathRule>& tests,
                 const ImportReport& report) {
    out.note(notes::CHECKOUT, report.checkout);
    if (const auto commit = report.checkout.empty() ? std::nullopt : git::checked_out_commit(report.checkout)) {
        out.note(notes::COMMIT, *commit);
    }
    out.note(notes::TEST_RULES, to_json(tests));
    out.note(notes::SHARED_SUMMARIES, shared_summaries(extraction.summaries));
    out.note(notes::DAMAGED, extraction.damaged);
    out.note(notes::REPORT, to_json(report));
}

void write_index(NewIndex& index, const Extraction& extraction, const References& references,
                 const std::vector<PathRule>& tests, TextSpool& spool, RowId room, Progress& progress,
                 ImportReport& report) {
    const PathRules rules(tests);
    const TestRulesInForce in_force(rules);
    try {
        RowWriter& out = index.rows();
        write_rows(
            out, extraction, references, spool, room, [&](std::size_t steps) { progress.advance(steps); }, report);
        write_notes(out, extraction, tests, report);
        index.complete({.files = report.files, .declarations = report.declarations, .edges = report.edges});
    } catch (const IndexError& error) {
        throw index.failure(error);
    }
}

}  // namespace

void make_index(const Extraction& extraction, std::vector<PathRule> tests, const std::optional<Checkout>& checkout,
                TextSpool& spool, NewIndex& index, RowId room, Progress& progress, ImportReport& report) {
    const References references(extraction);
    for (const PathRule& rule : rules_of_uses(extraction, references, checkout, [&] { progress.report(); })) {
        tests.push_back(rule);
        report.misnamed_tests.add(rule.pattern.substr(1));
    }
    write_index(index, extraction, references, tests, spool, room, progress, report);
    progress.report();
    index.commit();
}

}  // namespace host::indexing
