// The public functions of the component, each as something to be timed over one page.
#pragma once

#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/render.h"
#include "workers/wiki/scope/selection.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// The names of the callables and types among some declarations, in their order.
std::vector<wiki::scope::NamedPath> names_of(const std::vector<const wiki::scope::ScopeSymbol*>& declarations);

/// A page, and what several functions take of it.
struct Page {
    const wiki::scope::ScopeFacts facts;
    const wiki::scope::FanIn fan_in = wiki::scope::production_fan_in(facts);
    const wiki::scope::RankedFiles ranked = wiki::scope::ranked_by_file(facts, fan_in);
    const std::vector<wiki::scope::NamedPath> names =
        names_of(select_with_quota(ranked, fan_in, std::ssize(facts.symbols), 1, 1));  // all of them
};

/// One thing to time.
struct Function {
    std::string name;
    std::function<void(const Page&)> run;
};

/// What reading the references once costs: one pass over `inbound` that hashes every source path and adds `refs` to a
/// table by target id.
void bare_pass(const Page& page);

/// The whole pass after loading: what a page writer calls, each once.
void whole_pass(const wiki::scope::ScopeFacts& facts);

/// Every public function, and the whole pass.
const std::vector<Function>& functions();

}  // namespace bench
