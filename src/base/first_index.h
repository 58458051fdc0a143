// From a key to the position it first stood at: the answer of a search from the front of a list,
// without the search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace vantrel {

// Open addressing over a power of two, at most half full. Keys are held by value; a text key's
// bytes must outlive the index.
template <typename Key>
class FirstIndex {
 public:
  static constexpr std::int32_t kNone = -1;

  explicit FirstIndex(std::size_t expected_keys = 0) { resize(expected_keys); }

  // Remembers the position, 0 or more, unless the key is known already; returns the one that holds.
  std::int32_t add(const Key& key, std::int32_t position) {
    if ((count_ + 1) * 2 > slots_.size()) grow();
    Slot& slot = slots_[slot_of(key)];
    if (slot.position == kNone) {
      slot = {key, position};
      ++count_;
    }
    return slot.position;
  }

  // kNone when the key was never added.
  [[nodiscard]] std::int32_t find(const Key& key) const { return slots_[slot_of(key)].position; }
  [[nodiscard]] bool contains(const Key& key) const { return find(key) != kNone; }

 private:
  struct Slot {
    Key key{};
    std::int32_t position = kNone;
  };

  void resize(std::size_t keys) {
    std::size_t size = 16;
    while (size < keys * 2) size *= 2;
    slots_.assign(size, Slot{});
    count_ = 0;
  }

  void grow() {
    std::vector<Slot> old;
    old.swap(slots_);
    resize(old.size());
    for (const Slot& slot : old) {
      if (slot.position != kNone) add(slot.key, slot.position);
    }
  }

  // Where the key stands, or the free slot where it would.
  [[nodiscard]] std::size_t slot_of(const Key& key) const {
    const std::size_t mask = slots_.size() - 1;
    // std::hash leaves numbers as they are: spread them, or runs of ids pile up.
    std::uint64_t hash = std::hash<Key>{}(key)*0x9E3779B97F4A7C15u;
    std::size_t i = static_cast<std::size_t>(hash >> 32) & mask;
    while (slots_[i].position != kNone && slots_[i].key != key) i = (i + 1) & mask;
    return i;
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

using TextIndex = FirstIndex<std::string_view>;
using IdIndex = FirstIndex<std::int32_t>;

}  // namespace vantrel
