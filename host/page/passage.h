// A list in Markdown that can be shortened.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// How long an item of a list is, and what it leaves out.
struct ItemSize {
    std::size_t bytes = 0;
    bool lacks_source = false;
    bool lacks_comment = false;
    std::size_t lacking_uses = 0;  ///< citations of where a declaration is used
};

/// The points, rows or blocks of a list, what matters most first; each is whole lines. Some can be shortened, step by
/// step: how long they are then is known without printing them.
class Items {
  public:
    Items() = default;
    Items(const Items&) = delete;
    Items& operator=(const Items&) = delete;
    virtual ~Items() = default;

    /// In how many steps the items can be shortened.
    [[nodiscard]] virtual std::size_t steps() const = 0;

    /// The size of each item after so many of the steps. The time grows with the number of the items.
    [[nodiscard]] virtual std::vector<ItemSize> sizes(std::size_t steps) const = 0;

    /// Appends the first `count` items, as they are after so many of the steps.
    virtual void print(std::string& text, std::size_t count, std::size_t steps) const = 0;
};

/// Items that are never shortened.
class FixedItems : public Items {
  public:
    explicit FixedItems(std::vector<std::string> texts = {}) : texts_(std::move(texts)) {}

    [[nodiscard]] std::size_t steps() const override { return 0; }
    [[nodiscard]] std::vector<ItemSize> sizes(std::size_t steps) const override;
    void print(std::string& text, std::size_t count, std::size_t steps) const override;

  private:
    std::vector<std::string> texts_;
};

/// A list and what stands around it. Everything is whole lines, and an item is never cut in two.
struct Passage {
    /// Which lists are shortened faster: those that say more of the page, or the ones that name each of its files.
    enum class Rank { DETAIL, FILE_BY_FILE };

    std::string heading = {};     ///< stands whatever is left out
    std::string sentence = {};    ///< what the list is, for who does not know; gives way first
    std::string table_head = {};  ///< stands above the items, unless there is none left
    std::shared_ptr<const Items> items = std::make_shared<FixedItems>();
    std::string after = {};           ///< stands whatever is left out
    std::string_view item_name = {};  ///< of one item: "file"
    bool is_bulleted = false;         ///< whether an item is a point of a list
    Rank rank = Rank::DETAIL;
};

/// How much of a list is left out.
struct LeftOut {
    std::size_t items = 0;
    std::size_t sources = 0;   ///< of the items that are kept
    std::size_t uses = 0;      ///< citations of the items that are kept
    std::size_t comments = 0;  ///< of the items that are kept
};

/// The line that says what is left out of a passage; empty when nothing is. `has_items` tells whether any item is kept.
std::string what_is_left_out(const Passage& passage, const LeftOut& left_out, bool has_items);

}  // namespace host
