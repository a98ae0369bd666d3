#include "host/page/budget.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace host {

namespace {

// Shares of a list are counted in thousandths.
constexpr std::size_t WHOLE = 1000;

// The largest number from `least`, for which `fits` holds, to `most`; it holds for none beyond one for which it does
// not.
template <class Fits>
std::size_t largest(std::size_t least, std::size_t most, Fits fits) {
    while (least < most) {
        const std::size_t middle = most - (most - least) / 2;
        if (fits(middle)) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return least;
}

// A passage of which the first items are kept, all of them shortened. It knows how long it is; its text is printed
// once.
class ShortenedPassage {
  public:
    explicit ShortenedPassage(Passage passage) : passage_(std::move(passage)) { measure(); }

    [[nodiscard]] std::size_t steps() const { return passage_.items->steps(); }
    [[nodiscard]] std::size_t count() const { return sums_.size() - 1; }
    [[nodiscard]] std::size_t kept() const { return kept_; }
    [[nodiscard]] std::size_t size() const { return size_with(kept_); }

    void leave_out_sentence() { passage_.sentence.clear(); }

    void shorten(std::size_t steps) {
        if (this->steps() > 0) {
            steps_ = std::min(steps, this->steps());
            measure();
        }
    }

    // Keeps so many items; all where it takes no more room to print the others than to say that they are left out.
    void keep(std::size_t items) { kept_ = size_with(items) < size_with(count()) ? items : count(); }

    void keep_share(std::size_t share) {
        const std::size_t own = passage_.rank == Passage::Rank::FILE_BY_FILE ? std::min(2 * share, WHOLE) : share;
        keep((count() * own + WHOLE / 2) / WHOLE);
    }

    void add_to(std::string& text) const {
        text.append(passage_.heading).append(passage_.sentence).append(kept_ > 0 ? passage_.table_head : "");
        passage_.items->print(text, kept_, steps_);
        text.append(left_out(kept_)).append(passage_.after);
    }

  private:
    // What the items up to one sum up to.
    struct Sum {
        std::size_t bytes = 0;
        std::size_t sources = 0;
        std::size_t uses = 0;
        std::size_t comments = 0;
    };

    void measure() {
        sums_.assign(1, {});
        for (const ItemSize& item : passage_.items->sizes(steps_)) {
            const Sum& before = sums_.back();
            sums_.push_back({before.bytes + item.bytes, before.sources + (item.lacks_source ? 1U : 0U),
                             before.uses + item.lacking_uses, before.comments + (item.lacks_comment ? 1U : 0U)});
        }
        kept_ = count();
    }

    [[nodiscard]] std::string left_out(std::size_t kept) const {
        const LeftOut left_out{.items = count() - kept,
                               .sources = sums_[kept].sources,
                               .uses = sums_[kept].uses,
                               .comments = sums_[kept].comments};
        return what_is_left_out(passage_, left_out, kept > 0);
    }

    [[nodiscard]] std::size_t size_with(std::size_t kept) const {
        return passage_.heading.size() + passage_.sentence.size() + (kept > 0 ? passage_.table_head.size() : 0) +
               sums_[kept].bytes + left_out(kept).size() + passage_.after.size();
    }

    Passage passage_;
    std::size_t steps_ = 0;  // by which the items are shortened
    std::vector<Sum> sums_;  // of the first items, by their number
    std::size_t kept_ = 0;
};

class ShortenedPage {
  public:
    explicit ShortenedPage(std::vector<Passage> passages) {
        for (Passage& passage : passages) {
            passages_.emplace_back(std::move(passage));
        }
    }

    [[nodiscard]] std::size_t size() const {
        std::size_t size = 0;
        for (const ShortenedPassage& passage : passages_) {
            size += passage.size();
        }
        return size;
    }

    void leave_out_sentences() {
        for (ShortenedPassage& passage : passages_) {
            passage.leave_out_sentence();
        }
    }

    [[nodiscard]] std::size_t steps() const {
        std::size_t steps = 0;
        for (const ShortenedPassage& passage : passages_) {
            steps = std::max(steps, passage.steps());
        }
        return steps;
    }

    void shorten(std::size_t steps) {
        for (ShortenedPassage& passage : passages_) {
            passage.shorten(steps);
        }
    }

    void keep_share(std::size_t share) {
        for (ShortenedPassage& passage : passages_) {
            passage.keep_share(share);
        }
    }

    // Takes in, list by list, the items for which there is room still.
    void fill(std::size_t most) {
        std::size_t size = this->size();
        for (ShortenedPassage& passage : passages_) {
            const std::size_t others = size - passage.size();
            const std::size_t kept = largest(passage.kept(), passage.count(), [&](std::size_t items) {
                passage.keep(items);
                return others + passage.size() <= most;
            });
            passage.keep(kept);
            size = others + passage.size();
        }
    }

    [[nodiscard]] std::string text() const {
        std::string text;
        text.reserve(size());
        for (const ShortenedPassage& passage : passages_) {
            passage.add_to(text);
        }
        return text;
    }

  private:
    std::vector<ShortenedPassage> passages_;
};

std::string least_that_would_do(std::size_t least) {
    const std::size_t tokens = (least + BYTES_OF_A_TOKEN - 1) / BYTES_OF_A_TOKEN;
    return "too few bytes: the page needs at least " + std::to_string(least) + " (" + std::to_string(tokens) +
           " tokens); allow as many, or choose fewer sections";
}

}  // namespace

std::string fitted(std::vector<Passage> passages, std::size_t most) {
    ShortenedPage page(std::move(passages));
    if (page.size() <= most) {
        return page.text();
    }
    page.leave_out_sentences();
    if (page.size() <= most) {
        return page.text();
    }
    const std::size_t steps = page.steps();
    page.shorten(steps);
    if (page.keep_share(0); page.size() > most) {
        throw TooFewBytes(least_that_would_do(page.size()));
    }
    if (page.keep_share(WHOLE); page.size() <= most) {
        page.shorten(steps - largest(0, steps, [&](std::size_t spared) {
                         page.shorten(steps - spared);
                         return page.size() <= most;
                     }));
        return page.text();
    }
    page.keep_share(largest(0, WHOLE, [&](std::size_t share) {
        page.keep_share(share);
        return page.size() <= most;
    }));
    page.fill(most);
    return page.text();
}

}  // namespace host
