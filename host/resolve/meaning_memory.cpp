#include "host/resolve/meaning_memory.h"

#include <algorithm>
#include <utility>

namespace host::resolve {

namespace {

// What nobody writes: longer chains of questions, and circles of more of them or in which they change more often.
constexpr std::size_t DEEPEST = 200;
constexpr std::size_t MOST_DRAFTS = 1'000;
constexpr int MOST_ROUNDS = 20;

std::uint64_t key(const Question& question) {
    return (std::uint64_t{question.first} << 32U) | question.second;
}

}  // namespace

const MeaningTable& MeaningMemory::known(const Question& question) const {
    return known_.at(static_cast<std::size_t>(question.subject));
}

Meaning MeaningMemory::find(const Question& question, const std::function<Meaning()>& compute) {
    if (const auto found = known(question).find(key(question))) {
        return {found->begin(), found->end()};
    }
    if (const auto open = std::ranges::find(open_, question); open != open_.end()) {
        outermost_ = std::min(outermost_, static_cast<std::size_t>(open - open_.begin()));
        return earlier_draft_of(question);
    }
    if (const Draft* const draft = draft_of(question)) {
        outermost_ = std::min(outermost_, draft->outermost);
        return draft->meaning;
    }
    if (open_.size() >= DEEPEST || drafts_.size() >= MOST_DRAFTS) {
        outermost_ = 0;
        is_cut_off_ = true;
        return {};
    }
    const std::size_t outermost_before = outermost_;
    Meaning meaning = settle(question, compute);
    outermost_ = std::min(outermost_before, outermost_);
    return meaning;
}

// Computes the meaning of a question, again and again where it is the outermost of those that depend on one another.
Meaning MeaningMemory::settle(const Question& question, const std::function<Meaning()>& compute) {
    const std::size_t depth = open_.size();
    const std::size_t first = drafts_.size();
    open_.push_back(question);
    Meaning meaning;
    for (int round = 1; round <= MOST_ROUNDS; ++round) {
        put_aside(first);
        outermost_ = INDEPENDENT;
        meaning = compute();
        if (outermost_ == INDEPENDENT) {
            keep(question, meaning);
            break;
        }
        add_draft(question, meaning, first);
        if (outermost_ < depth || is_cut_off_ || are_settled(first)) {
            break;
        }
    }
    open_.pop_back();
    if (outermost_ == depth) {
        outermost_ = INDEPENDENT;
        keep_drafts(std::exchange(is_cut_off_, false) ? drafts_.size() - 1 : first);
        put_aside(first);
    }
    if (depth == 0) {
        earlier_drafts_.clear();
    }
    return meaning;
}

const MeaningMemory::Draft* MeaningMemory::draft_of(const Question& question) const {
    const auto place = draft_places_.find(question);
    return place == draft_places_.end() ? nullptr : &drafts_[place->second];
}

Meaning MeaningMemory::earlier_draft_of(const Question& question) const {
    const auto draft = earlier_drafts_.find(question);
    return draft == earlier_drafts_.end() ? Meaning() : draft->second;
}

// Adds a draft. Those from `first` on were computed for it, so they depend on all that it depends on.
void MeaningMemory::add_draft(const Question& question, const Meaning& meaning, std::size_t first) {
    draft_places_.emplace(question, drafts_.size());
    drafts_.push_back({question, meaning, outermost_});
    for (std::size_t at = first; at < drafts_.size(); ++at) {
        drafts_[at].outermost = std::min(drafts_[at].outermost, outermost_);
    }
}

bool MeaningMemory::are_settled(std::size_t first) const {
    return std::all_of(drafts_.begin() + static_cast<std::ptrdiff_t>(first), drafts_.end(),
                       [&](const Draft& draft) { return draft.meaning == earlier_draft_of(draft.question); });
}

// Has the drafts from `first` on be those of an earlier round.
void MeaningMemory::put_aside(std::size_t first) {
    for (; drafts_.size() > first; drafts_.pop_back()) {
        draft_places_.erase(drafts_.back().question);
        earlier_drafts_[drafts_.back().question] = std::move(drafts_.back().meaning);
    }
}

void MeaningMemory::keep(const Question& question, const Meaning& meaning) {
    known_.at(static_cast<std::size_t>(question.subject)).add(key(question), meaning);
}

void MeaningMemory::keep_drafts(std::size_t first) {
    for (; drafts_.size() > first; drafts_.pop_back()) {
        draft_places_.erase(drafts_.back().question);
        keep(drafts_.back().question, drafts_.back().meaning);
    }
}

void MeaningMemory::trim(std::size_t most) {
    MeaningTable& expressions = known_.at(static_cast<std::size_t>(Question::Subject::EXPRESSION));
    if (expressions.size() > most) {
        expressions.clear();
    }
}

}  // namespace host::resolve
