// What was asked of a repository, with the meanings that were found out: each is computed once.
#pragma once

#include "host/resolve/meaning.h"
#include "host/resolve/meaning_table.h"

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace host::resolve {

/// What a meaning is asked of, by two numbers that tell one from another of its subject.
struct Question {
    enum class Subject : std::uint8_t { EXPRESSION, EXPORT, IMPORT };

    Subject subject = Subject::EXPRESSION;
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Question&, const Question&) = default;
};

/// Computes meanings, and keeps them.
///
/// Questions may depend on one another in a circle, as where two modules export all of each other. Their meanings are
/// then the least that agree: at first each means nothing to the others, and all are computed again until none changes.
/// So a meaning does not depend on which question was asked first, or on what is kept. But where there is more to
/// follow than anybody writes, the rest means nothing, and how much that is depends on what is kept.
class MeaningMemory {
  public:
    /// Returns the meaning of a question. `compute` is called where it is not known, perhaps several times, and asks in
    /// turn what it needs to know.
    Meaning find(const Question& question, const std::function<Meaning()>& compute);

    /// Forgets the meanings of expressions, most of what is kept, once there are more than `most`.
    void trim(std::size_t most);

  private:
    // An answer for the time being: it depends on questions that are still open.
    struct Draft {
        Question question;
        Meaning meaning;
        std::size_t outermost = 0;  // of these the depth of the outermost
    };

    [[nodiscard]] const MeaningTable& known(const Question& question) const;
    [[nodiscard]] const Draft* draft_of(const Question& question) const;
    [[nodiscard]] Meaning earlier_draft_of(const Question& question) const;
    Meaning settle(const Question& question, const std::function<Meaning()>& compute);
    void add_draft(const Question& question, const Meaning& meaning, std::size_t first);
    [[nodiscard]] bool are_settled(std::size_t first) const;
    void put_aside(std::size_t first);
    void keep(const Question& question, const Meaning& meaning);
    void keep_drafts(std::size_t first);

    std::array<MeaningTable, 3> known_;             // by subject
    std::vector<Question> open_;                    // by depth: those that are being computed
    std::vector<Draft> drafts_;                     // in the order in which they were computed
    std::map<Question, std::size_t> draft_places_;  // in `drafts_`
    std::map<Question, Meaning> earlier_drafts_;    // of the round before
    std::size_t outermost_ = INDEPENDENT;           // the depth of the outermost open question that was asked
    bool is_cut_off_ = false;                       // whether there were too many to follow

    static constexpr std::size_t INDEPENDENT = static_cast<std::size_t>(-1);
};

}  // namespace host::resolve
