// From a key to the position it first stood at: the answer of a search from the front of a list,
// without the search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace vantrel {

// Spreads numbers that differ little over all bits.
[[nodiscard]] constexpr std::uint64_t spread(std::uint64_t value) {
  value *= 0x9E3779B97F4A7C15u;
  return value ^ (value >> 32);
}

[[nodiscard]] constexpr std::uint64_t hash_key(std::int32_t key) {
  return spread(static_cast<std::uint32_t>(key));
}
[[nodiscard]] constexpr std::uint64_t hash_key(std::uint64_t key) { return spread(key); }

// Eight bytes at a time; the last eight overlap those before where the length is no multiple.
[[nodiscard]] inline std::uint64_t hash_key(std::string_view key) {
  std::uint64_t hash = key.size();
  std::uint64_t word = 0;
  if (key.size() < sizeof word) {
    if (!key.empty()) std::memcpy(&word, key.data(), key.size());
    return spread(hash ^ word * 31);
  }
  for (std::size_t i = 0; i + sizeof word <= key.size(); i += sizeof word) {
    std::memcpy(&word, key.data() + i, sizeof word);
    hash = spread(hash ^ word);
  }
  std::memcpy(&word, key.data() + key.size() - sizeof word, sizeof word);
  return spread(hash ^ word);
}

// Open addressing over a power of two, at most half full. Keys are held by value; a text key's
// bytes must outlive the index.
template <typename Key>
class FirstIndex {
 public:
  static constexpr std::int32_t kNone = -1;

  explicit FirstIndex(std::size_t expected_keys = 0) { resize(expected_keys); }

  // Remembers the position, 0 or more, unless the key is known already; returns the one that
  // holds, which may be changed until the next key is added.
  std::int32_t& add(const Key& key, std::int32_t position) {
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
    std::size_t i = static_cast<std::size_t>(hash_key(key)) & mask;
    while (slots_[i].position != kNone && slots_[i].key != key) i = (i + 1) & mask;
    return i;
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

using TextIndex = FirstIndex<std::string_view>;
using IdIndex = FirstIndex<std::int32_t>;

}  // namespace vantrel
