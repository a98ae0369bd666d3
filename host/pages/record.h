// What the files of a wiki stated when they were written: a hidden file in the wiki's folder.
#pragma once

#include "host/pages/stated_facts.h"
#include "host/pages/wiki_folder.h"

#include <map>
#include <string>

namespace host::pages {

/// A file that a run has written.
struct RecordedFile {
    StatedFacts facts;
    std::string version;  ///< of the program that wrote it
};

/// The files by their paths in the folder.
using Record = std::map<std::string, RecordedFile>;

/// Reads the record of a folder. Returns an empty one when there is none. Throws `std::runtime_error` with one line
/// that says what to do when the file is damaged, and what `WikiFolder::read` throws.
Record read_record(const WikiFolder& folder);

/// Stages the record in its folder, unless the file says the same. Throws what `WikiFolder::stage` throws.
void stage_record(WikiFolder& folder, const Record& record);

}  // namespace host::pages
