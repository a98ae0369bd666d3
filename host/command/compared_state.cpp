#include "host/command/compared_state.h"

#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/reading_progress.h"
#include "host/files/folder_name.h"
#include "host/index/index_error.h"
#include "host/index/place.h"
#include "host/location/index_at.h"
#include "host/worktree/checkout_index.h"

#include <system_error>
#include <utility>

namespace host {

namespace fs = std::filesystem;

ComparedState::ComparedState(std::unique_ptr<Index> index) : named_(std::move(index)), index_(named_.get()) {
    open();
}

ComparedState::ComparedState(std::unique_ptr<revisions::RevisionIndex> revision)
    : revision_(std::move(revision)), index_(&revision_->index()) {
    open();
}

void ComparedState::open() {
    try {
        connection_ = index_->connect();
        connection_->watch([] { Interruption::throw_if_requested("interrupted"); });
        database_ = connection_->read();
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(*index_, error));
    } catch (const IndexError& error) {
        throw failure(error);
    }
}

std::runtime_error ComparedState::failure(const IndexError& error) const {
    return std::runtime_error(failure_of(*index_, error));
}

ComparableStates::ComparableStates(const std::string& checkout, std::string repository)
    : root_(checkout.empty() ? worktree::checkout_around(fs::current_path()) : fs::path(checkout)),
      repository_(std::move(repository)) {
    try {
        commits_ = std::make_unique<revisions::Commits>(root_);
    } catch (const std::runtime_error& error) {
        why_there_are_none_ = error.what();
    }
}

std::optional<std::string> ComparableStates::commit(const std::string& name) const {
    return commits_ == nullptr ? std::nullopt : commits_->find(name);
}

bool ComparableStates::know(const std::string& name) const {
    std::error_code error;
    return is_server(name) || fs::is_regular_file(name, error) || commit(name);
}

ComparedState ComparableStates::open(const std::string& name) const {
    if (is_server(name)) {
        return ComparedState(index_at(name, repository_.empty() ? folder_name(root_.string()) : repository_));
    }
    std::error_code error;
    if (fs::is_regular_file(name, error)) {
        return ComparedState(index_at(name));
    }
    if (const std::optional<std::string> found = commit(name)) {
        return ComparedState(
            std::make_unique<revisions::RevisionIndex>(root_, *commits_, *found, progress_of_reading()));
    }
    throw std::runtime_error(name + ": no such index" +
                             (commits_ == nullptr ? "; and " + why_there_are_none_
                                                  : ", and no revision of the repository in " + root_.string()));
}

ComparedState ComparableStates::open_work_tree() const {
    return ComparedState(std::make_unique<worktree::CheckoutIndex>(root_.string(), progress_of_reading()));
}

}  // namespace host
