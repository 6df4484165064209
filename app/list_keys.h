// Where the keyboard leads in the popover's list, and when a key acts on a row: only on one that is marked
// for everybody to see. Pure; any thread.
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
    /// The row to be marked, and to be brought into sight; absent in an empty list and where a key that acts
    /// met no mark.
    std::optional<int> marked = {};
    /// What to do with the marked row.
    Act act = Act::none;
    friend bool operator==(const ListAnswer&, const ListAnswer&) = default;
};

/// A key that acts on a row out of sight only brings it back.
ListAnswer answerKey(ListKey key, const ListMark& list);

}  // namespace pintle
