#include "embedded/page/budget.h"

#include <algorithm>
#include <utility>

namespace embedded {

namespace {

// Shares of a list are counted in thousandths.
constexpr std::size_t WHOLE = 1000;

// A page of which as many items of each list are kept as fit.
class ShortenedPage {
  public:
    explicit ShortenedPage(std::vector<Passage> passages) : passages_(std::move(passages)) {
        for (const Passage& passage : passages_) {
            kept_.push_back(passage.items.size());
            std::vector<std::size_t>& bytes = bytes_.emplace_back(1, 0);
            for (const std::string& item : passage.items) {
                bytes.push_back(bytes.back() + item.size());
            }
        }
    }

    [[nodiscard]] std::size_t size() const {
        std::size_t size = 0;
        for (std::size_t at = 0; at < passages_.size(); ++at) {
            const Passage& passage = passages_[at];
            size += passage.before.size() + (kept_[at] > 0 ? passage.table_head.size() : 0) + bytes_[at][kept_[at]] +
                    what_is_left_out(passage, kept_[at]).size() + passage.after.size();
        }
        return size;
    }

    // Keeps this share of each list of a rank.
    void keep(Passage::Rank rank, std::size_t share) {
        for (std::size_t at = 0; at < passages_.size(); ++at) {
            if (passages_[at].rank == rank) {
                kept_[at] = (passages_[at].items.size() * share + WHOLE / 2) / WHOLE;
            }
        }
    }

    // Keeps the largest share of each list of a rank with which the page fits into `most` bytes; none when none fits.
    void keep_what_fits(Passage::Rank rank, std::size_t most) {
        std::size_t first = 0;
        std::size_t beyond = WHOLE + 1;
        while (beyond - first > 1) {
            const std::size_t middle = first + (beyond - first) / 2;
            keep(rank, middle);
            (size() <= most ? first : beyond) = middle;
        }
        keep(rank, first);
    }

    // Takes in, list by list, the items for which there is room still.
    void fill(std::size_t most) {
        for (std::size_t at = 0; at < passages_.size(); ++at) {
            while (kept_[at] < passages_[at].items.size()) {
                ++kept_[at];
                if (size() > most) {
                    --kept_[at];
                    break;
                }
            }
        }
    }

    [[nodiscard]] std::string text() const {
        std::string text;
        for (std::size_t at = 0; at < passages_.size(); ++at) {
            text += shortened(passages_[at], kept_[at]);
        }
        return text;
    }

  private:
    std::vector<Passage> passages_;
    std::vector<std::size_t> kept_;                // how many items of each passage
    std::vector<std::vector<std::size_t>> bytes_;  // of each passage, of its first items, by their number
};

}  // namespace

std::optional<std::string> fitted(const PassagesWithSources& passages, std::size_t sources, std::size_t most) {
    ShortenedPage page(passages(sources));
    if (page.size() <= most) {
        return page.text();
    }
    std::size_t kept = 0;  // with as many it fits, if it does with any
    for (std::size_t beyond = sources; beyond - kept > 1;) {
        const std::size_t middle = kept + (beyond - kept) / 2;
        (ShortenedPage(passages(middle)).size() <= most ? kept : beyond) = middle;
    }
    page = ShortenedPage(passages(kept));
    if (page.size() > most) {
        page.keep_what_fits(Passage::Rank::DETAIL, most);
    }
    if (page.size() > most) {
        page.keep_what_fits(Passage::Rank::FILE_BY_FILE, most);
    }
    if (page.size() > most) {
        return std::nullopt;
    }
    page.fill(most);
    return page.text();
}

}  // namespace embedded
