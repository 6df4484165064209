// The frames of an animation. Most long animations are shown by a few of their frames: the others are drawn
// each time somebody asks for one, so that those that nobody looks at cost nothing. Any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "base/bitmap.h"

namespace pintle {

/// Which of `count` frames are sent to the desktop: all of them up to 24, else 24 spread over the whole
/// animation.
std::vector<std::size_t> sentFrames(std::size_t count);

class FrameList {
  public:
    /// Draws one frame; called on the thread of whoever asks for it.
    using Draw = std::function<Bitmap(std::size_t)>;

    FrameList() = default;
    /// Frames that are absent in `drawn` are left to `draw`.
    FrameList(std::vector<std::optional<Bitmap>> drawn, Draw draw)
        : drawn_(std::move(drawn)), draw_(std::move(draw)) {}

    std::size_t size() const { return drawn_.size(); }
    bool empty() const { return drawn_.empty(); }
    Bitmap operator[](std::size_t i) const { return drawn_[i] ? *drawn_[i] : draw_(i); }
    /// Whether asking for the frame draws nothing.
    bool isDrawn(std::size_t i) const { return drawn_[i].has_value(); }
    void push_back(Bitmap frame) { drawn_.emplace_back(std::move(frame)); }

    class const_iterator {
      public:
        using value_type = Bitmap;
        const_iterator(const FrameList& list, std::size_t at) : list_(&list), at_(at) {}
        Bitmap operator*() const { return (*list_)[at_]; }
        const_iterator& operator++() {
            ++at_;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return at_ == other.at_; }

      private:
        const FrameList* list_;
        std::size_t at_;
    };
    const_iterator begin() const { return {*this, 0}; }
    const_iterator end() const { return {*this, size()}; }

    /// Same frames, drawn for the comparison where they are not.
    friend bool operator==(const FrameList& a, const FrameList& b);

  private:
    std::vector<std::optional<Bitmap>> drawn_;
    Draw draw_;
};

}  // namespace pintle
