// Which row a key marks in the popover's list, and when it acts on a row: only on one that is visibly marked.
// Pure; any thread.
#pragma once

#include <optional>

namespace pintle {

enum class ListKey { down, up, home, end, pageDown, pageUp, tap, remove };

/// The list as the user sees it. Rows are counted from 0.
struct ListMark {
    /// The row with the keyboard's mark; absent while none is marked.
    std::optional<int> marked = {};
    /// The row that the first arrow marks while none is.
    int entry = 0;
    int count = 0;
    /// Rows that a page moves by.
    int page = 1;
    /// Whether the marked row can be seen.
    bool inSight = true;
};

struct ListAnswer {
    enum class Act { none, tap, remove };
    /// The row to be marked and scrolled into view; absent in an empty list, and when a key that acts on a
    /// row finds none marked.
    std::optional<int> marked = {};
    /// What to do with the marked row.
    Act act = Act::none;
    friend bool operator==(const ListAnswer&, const ListAnswer&) = default;
};

/// A key that acts on a row out of sight only brings it back.
ListAnswer answerKey(ListKey key, const ListMark& list);

}  // namespace pintle
