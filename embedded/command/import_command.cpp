#include "embedded/command/import_command.h"

#include "embedded/command/file_option.h"
#include "embedded/command/interruption.h"
#include "embedded/command/standard_output.h"
#include "embedded/counted.h"
#include "embedded/scip/import.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>

namespace embedded {

namespace {

struct ImportArguments {
    std::string scip;
    std::string index;
};

// One line on a terminal that says how far the import has come; nothing elsewhere.
class ProgressLine {
  public:
    ProgressLine() = default;
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() {
        if (percent_ >= 0) {
            std::cerr << "\r\033[K" << std::flush;
        }
    }

    void show(std::int64_t done, std::int64_t total) {
        const std::int64_t percent = 100 * done / total;
        if (is_shown_ && percent != percent_) {
            std::cerr << "\rImporting: " << percent << " %" << std::flush;
            percent_ = percent;
        }
    }

  private:
    bool is_shown_ = isatty(STDERR_FILENO) != 0;
    std::int64_t percent_ = -1;
};

std::string closing_line(const ImportArguments& arguments, const scip::ImportCounts& counts) {
    std::string line = arguments.index + ": " + counted(counts.files, "file") + ", " +
                       counted(counts.declarations, "declaration") + ", " + counted(counts.edges, "edge");
    if (counts.unparsed_symbols > 0) {
        line += "; passed over " + counted(counts.unparsed_symbols, "symbol") + " that cannot be read";
    }
    if (counts.unusable_documents > 0) {
        line += "; passed over " + counted(counts.unusable_documents, "document") + " without a usable path";
    }
    return line;
}

void run_import(const ImportArguments& arguments) {
    const Interruption interruption;
    scip::ImportCounts counts;
    {
        ProgressLine progress;
        counts = scip::import_scip(arguments.scip, arguments.index, [&](std::int64_t done, std::int64_t total) {
            Interruption::throw_if_requested("interrupted; nothing was changed at " + arguments.index);
            progress.show(done, total);
        });
    }
    print([&](std::ostream& out) { out << closing_line(arguments, counts) << '\n'; });
}

}  // namespace

void add_import_command(CLI::App& app) {
    const auto arguments = std::make_shared<ImportArguments>();
    CLI::App& command = *app.add_subcommand("import", "Make an index of a repository from a SCIP file");
    add_file_option(command, "INDEX.scip", arguments->scip, "What an indexer for SCIP has written");
    add_file_option(command, "--index", arguments->index, "The index to make, or to replace")->type_name("FILE.db");
    command.callback([arguments] { run_import(*arguments); });
}

}  // namespace embedded
