// The index of a checkout that nobody has to make: it lies in the user's cache, and is brought up to date when it is
// opened.
#pragma once

#include "host/index/index.h"
#include "host/indexing/progress.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace host::worktree {

/// Returns the root of the checkout around a folder: the nearest folder that holds `.git` or `.wiki-scope.toml`, which
/// may be the folder itself; else that.
std::filesystem::path checkout_around(const std::filesystem::path& folder);

/// The index of the sources of one checkout.
///
/// Before it is opened, and before a connection to it is used again, what has changed since is looked for: files that
/// came, went or changed by their times and sizes, the rules by which files are chosen, the program itself. A new index
/// then replaces the old one. Of several processes one makes it, and the others wait for that. One that is killed
/// leaves the old index, and the next begins anew.
class CheckoutIndex : public Index {
  public:
    /// `root` is the folder of the checkout. `on_progress` is called while an index is made, on the thread that waits
    /// for it. Throws `std::runtime_error` with one line when there is no such folder, or no place for the index.
    CheckoutIndex(const std::string& root, indexing::OnProgress on_progress);
    ~CheckoutIndex() override;
    CheckoutIndex(const CheckoutIndex&) = delete;
    CheckoutIndex& operator=(const CheckoutIndex&) = delete;

    [[nodiscard]] std::string name() const override;
    /// Also throws what `import_listed` throws.
    [[nodiscard]] std::unique_ptr<IndexConnection> connect() const override;
    [[nodiscard]] std::string options() const override;
    /// Makes the index anew, whatever has changed.
    [[nodiscard]] std::unique_ptr<NewIndex> replace(CheckInterrupt check_interrupt) const override;

  private:
    class Maker;
    std::shared_ptr<Maker> maker_;
};

}  // namespace host::worktree
