#pragma once

#include "page.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace web {

/// A list that is written anew for every drawing, mostly with what stood there before, of which the page has
/// a copy. Knows what the page has not got yet.
template <typename Item>
class Kept {
public:
    void rewrite() {
        used = 0;
        from = items.size();
        to = 0;
    }
    /// Room for so many more items, to be written in their order.
    void add(const Item* first, std::size_t count) {
        if (used + count > items.size()) {
            items.resize(std::max(used + count, 2 * items.size()));
        }
        Item* place = items.data() + used;
        if (used + count > known || std::memcmp(place, first, count * sizeof(Item)) != 0) {
            std::memcpy(place, first, count * sizeof(Item));
            from = std::min(from, used);
            to = used + count;
        }
        used += count;
    }
    void add(const Item& item) { add(&item, 1); }

    std::size_t size() const { return used; }
    const Item& back() const { return items[used - 1]; }

    PageList send() {
        known = std::max(known, used);
        return {items.data(), static_cast<std::uint32_t>(used),
                static_cast<std::uint32_t>(std::min(from, to)), static_cast<std::uint32_t>(to)};
    }
    /// The page has nothing any more.
    void forget() { known = 0; }

private:
    std::vector<Item> items;
    std::size_t used = 0;
    std::size_t known = 0; ///< items that the page has
    std::size_t from = 0;
    std::size_t to = 0;
};

} // namespace web
