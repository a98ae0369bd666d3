// Reads the sources of a checkout, or finds what is known of them without reading.
#pragma once

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/worktree/extract.h"
#include "host/worktree/facts_store.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host::worktree {

/// Reads sources. Safe to use on several threads.
class SourceReading {
  public:
    /// `facts` may be null. All must outlive the object.
    SourceReading(const Checkout& checkout, FactsStore* facts, TextSpool& spool)
        : checkout_(checkout), facts_(facts), spool_(spool) {}

    /// Returns what the file at a path says: by the hash of its content where that is known, which is 0 where it is not
    /// and the file must be read.
    [[nodiscard]] ReadFile read(const std::string& path, std::int64_t known_hash) const;

  private:
    [[nodiscard]] std::optional<SourceFacts> known_facts(const ReadFile& file) const;
    SourceFacts read_facts(ReadFile& file) const;

    const Checkout& checkout_;
    FactsStore* const facts_;
    TextSpool& spool_;
};

}  // namespace host::worktree
