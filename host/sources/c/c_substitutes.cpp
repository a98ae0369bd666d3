#include "host/sources/c/c_substitutes.h"

#include "host/sources/c/c_system_names.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

namespace host::sources {

namespace {

using syntax::Built;
using syntax::Declaration;
using syntax::DeclarationId;
using syntax::Kind;

// Which branches always have one name.
class CCoverage {
  public:
    explicit CCoverage(const CBranches& branches) : branches_(branches) {}

    // A branch has the name. Where all of a condition have it, so has the branch around that.
    void add(std::optional<std::size_t> branch) {
        while (branch && covered_.insert(*branch).second) {
            const CBranch& reached = branches_.branches[*branch];
            covered_of_conditions_[reached.condition] += reached.built == Built::NEVER ? 0 : 1;
            branch = is_covered(reached.condition) ? reached.around : std::nullopt;
        }
    }

    // Whether some branch of a condition has it whichever is taken.
    [[nodiscard]] bool is_covered(std::size_t condition) const {
        const auto found = covered_of_conditions_.find(condition);
        return found != covered_of_conditions_.end() && found->second > 0 &&
               found->second == branches_.alternatives[condition];
    }

  private:
    const CBranches& branches_;
    std::set<std::size_t> covered_;
    std::map<std::size_t, std::size_t> covered_of_conditions_;  // how many branches
};

// What may keep a build from having what stands in a branch.
struct CDoubt {
    bool is_optional = false;    // whether any condition does
    bool is_substitute = false;  // whether one that asks what a library has does
};

CDoubt doubt_of(std::optional<std::size_t> branch, const CBranches& branches, const CCoverage& coverage) {
    CDoubt doubt;
    for (; branch && !doubt.is_substitute; branch = branches.branches[*branch].around) {
        const CBranch& around = branches.branches[*branch];
        if (around.built == Built::MAYBE && !coverage.is_covered(around.condition)) {
            doubt.is_optional = true;
            doubt.is_substitute = around.is_substitute;
        }
    }
    return doubt;
}

}  // namespace

void mark_substitutes(syntax::Syntax& syntax, const CBranches& branches) {
    std::vector<Declaration>& all = syntax.declarations;
    const auto is_member = [&](const Declaration& each) {
        return each.owner != syntax::UNKNOWN ||
               (each.parent != syntax::NO_DECLARATION && all[each.parent].kind == Kind::TYPE);
    };
    std::map<std::tuple<DeclarationId, syntax::NameId>, std::vector<DeclarationId>> by_name;
    for (DeclarationId id = 0; id < all.size(); ++id) {
        if (all[id].name != 0 && all[id].built == Built::MAYBE && !is_member(all[id])) {
            by_name[{all[id].parent, all[id].name}].push_back(id);
        }
    }
    for (const auto& [name, ids] : by_name) {
        CCoverage coverage(branches);
        for (const DeclarationId id : ids) {
            coverage.add(branches.at(all[id].offset));
        }
        const bool has_macro = std::ranges::any_of(ids, [&](DeclarationId id) { return all[id].kind == Kind::MACRO; });
        for (const DeclarationId id : ids) {
            const CDoubt doubt = doubt_of(branches.at(all[id].offset), branches, coverage);
            all[id].is_substitute = doubt.is_substitute ||
                                    (doubt.is_optional && may_be_of_system(syntax.name(all[id].name))) ||
                                    (all[id].kind == Kind::TYPE && has_macro);  // which names what else has
        }
    }
}

}  // namespace host::sources
