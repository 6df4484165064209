// Finding a row by typing: what has been typed since the list was last left alone, and the first listed row
// whose name contains it. Part of the popover's list; main thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pintle {

/// The place of the first name that contains `typed`, case and accents ignored; absent when none does, and
/// for an empty text.
std::optional<std::size_t> firstContaining(const std::vector<std::string>& names, std::string_view typed);

class RowSearch {
  public:
    /// In characters; further ones are ignored.
    static constexpr std::size_t longest = 40;

    /// What has been typed; the search stands while it is not empty.
    const std::string& typed() const { return typed_; }
    bool stands() const { return !typed_.empty(); }

    /// A key that writes `text` was pressed. False for what the search does not take: invisible text, and a
    /// blank while nothing has been typed.
    bool type(std::string_view text);
    /// Takes the last character back. False when nothing has been typed.
    bool shorten();
    /// Ends the search. False when none stands.
    bool clear();

  private:
    std::string typed_;
    std::size_t length_ = 0;
};

}  // namespace pintle
