// One side of a comparison: an index, or the sources of a revision or of the work tree.
#pragma once

#include "host/index/index.h"
#include "host/revisions/commits.h"
#include "host/revisions/revision_index.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace host {

/// An index that is open for reading.
class ComparedState {
  public:
    /// Opens an index. Throws `std::runtime_error` with one line when it cannot be used.
    explicit ComparedState(std::unique_ptr<Index> index);
    /// Opens the index of a revision, which goes with this object.
    explicit ComparedState(std::unique_ptr<revisions::RevisionIndex> revision);

    [[nodiscard]] storage::Database& database() const { return *database_; }
    /// What is said of a failure to read it: one line.
    [[nodiscard]] std::runtime_error failure(const IndexError& error) const;

  private:
    void open();

    std::unique_ptr<revisions::RevisionIndex> revision_;  // null for an index that was there before
    std::unique_ptr<Index> named_;                        // null for that of a revision
    const Index* index_;                                  // either
    std::unique_ptr<IndexConnection> connection_;
    std::unique_ptr<storage::Database> database_;
};

/// Opens what the command line names.
class ComparableStates {
  public:
    /// `checkout` is the value of "--checkout", empty for the checkout around the current folder; `repository` that of
    /// "--repository".
    ComparableStates(const std::string& checkout, std::string repository);

    /// Whether a name is that of an index (the address of a database, or a file) or of a revision.
    [[nodiscard]] bool know(const std::string& name) const;

    /// Throws `std::runtime_error` with one line when the name stands for neither, and when the index cannot be used or
    /// made.
    [[nodiscard]] ComparedState open(const std::string& name) const;

    /// The sources as they lie in the checkout now.
    [[nodiscard]] ComparedState open_work_tree() const;

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

  private:
    /// The hash of a commit; none where there is none of this name, or no repository.
    [[nodiscard]] std::optional<std::string> commit(const std::string& name) const;

    const std::filesystem::path root_;
    const std::string repository_;
    std::unique_ptr<revisions::Commits> commits_;  // null where there are none
    std::string why_there_are_none_;
};

}  // namespace host
