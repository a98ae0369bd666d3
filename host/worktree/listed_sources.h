// Which files of a checkout an index of its sources is made from.
#pragma once

#include "host/files/checkout.h"
#include "host/git/checkout_files.h"
#include "host/rules/path_rules.h"

#include <functional>
#include <string>
#include <vector>

namespace host::worktree {

struct ListedSources {
    std::vector<git::CheckoutFile> sources;    ///< whose names tell their language, without those left out; by path
    std::vector<git::CheckoutFile> manifests;  ///< that may describe packages, and the configuration; by path
    std::vector<std::string> paths;            ///< of all files of the checkout, by path
    std::vector<std::string> excluded;         ///< files that a rule or an attribute (git/attributes.h) leaves out
};

/// Throws what `check_interrupt` throws, which is called for each folder.
ListedSources list_sources(const Checkout& checkout, const std::vector<PathRule>& exclusions,
                           const std::function<void()>& check_interrupt);

}  // namespace host::worktree
