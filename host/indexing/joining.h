// Joins what two front ends extract from one repository.
//
// One has read documents, which an indexer wrote for some of the files; the other has read sources, also those of the
// documents' files. A file is taken from its documents where there are any, else from its source. What holds both
// together is where names stand: a declaration that the sources lead to is the symbol that the documents define there.
#pragma once

#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"

namespace host::indexing {

/// Returns the extraction of all files of both.
///
/// A reference from a source to a file of the documents leads to the symbols that these define where its declaration
/// has its name; one to a declaration that they do not define is dropped, and counted as unresolved in `report`. A
/// token in a file of the documents is completed by its source where they do not say what it names, or name a symbol
/// that none of them defines.
///
/// Both must have their places: `FileDeclarations::names` and `ExtractedFile::tokens` of the documents' files.
Extraction joined(Extraction documents, Extraction sources, ImportReport& report);

}  // namespace host::indexing
