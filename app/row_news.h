// Which themes are marked as new. A theme that came while the popover was shown stays new until the popover
// is shown again; one that came while it was hidden is new for one showing. Value; main thread.
#pragma once

#include <map>
#include <string>

namespace pintle {

class RowNews {
  public:
    void downloaded(const std::string& id) { seen_.insert_or_assign(id, isShown_); }
    void appeared() {
        std::erase_if(seen_, [](const auto& each) { return each.second; });
        for (auto& [id, seen] : seen_) seen = true;
        isShown_ = true;
    }
    void disappeared() { isShown_ = false; }
    bool isShown() const { return isShown_; }
    bool isNew(const std::string& id) const { return seen_.contains(id); }

  private:
    bool isShown_ = false;
    /// Of each new theme, whether it has been shown as new.
    std::map<std::string, bool> seen_;
};

}  // namespace pintle
