// From a key to the position it first stood at: the answer of a search from the front of a list,
// without the search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace vantrel {

// Two numbers of this process, so that nobody who writes a log or a list can choose keys that meet
// in one place: a visitor chooses the name of the browser.
struct HashSeed {
  HashSeed();
  std::uint64_t first;
  std::uint64_t second;
};
extern const HashSeed hash_seed;

// The upper and the lower half of the product of two numbers, put together.
[[nodiscard]] inline std::uint64_t folded_product(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

[[nodiscard]] inline std::uint64_t hash_key(std::int32_t key) {
  return folded_product(static_cast<std::uint32_t>(key) ^ hash_seed.first, hash_seed.second);
}

// All bytes of a short text in two words; the halves overlap where they are not all needed. Texts
// of one size are equal when their words are.
struct ShortText {
  static constexpr std::size_t kMostBytes = 16;

  // size: at most kMostBytes.
  ShortText(const char* text, std::size_t size) {
    if (size >= 8) {
      first = load<std::uint64_t>(text);
      second = load<std::uint64_t>(text + size - 8);
    } else if (size >= 4) {
      first = load<std::uint32_t>(text);
      second = load<std::uint32_t>(text + size - 4);
    } else if (size > 0) {
      first = load<std::uint8_t>(text);
      second = load<std::uint8_t>(text + size / 2) << 8 | load<std::uint8_t>(text + size - 1);
    }
  }
  bool operator==(const ShortText&) const = default;

  std::uint64_t first = 0;
  std::uint64_t second = 0;

 private:
  template <typename Word>
  static std::uint64_t load(const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
  }
};

// Sixteen bytes at a time; the last sixteen overlap those before where the size is no multiple.
[[nodiscard]] inline std::uint64_t hash_key(std::string_view key) {
  const char* text = key.data();
  std::size_t size = key.size();
  std::uint64_t hash = size ^ hash_seed.first;
  const auto mix = [&hash](const ShortText& words) {
    hash = folded_product(hash ^ words.first, words.second ^ hash_seed.second);
  };
  constexpr std::size_t kBlock = ShortText::kMostBytes;
  if (size <= kBlock) {
    mix({text, size});
    return hash;
  }
  for (; size > kBlock; text += kBlock, size -= kBlock) mix({text, kBlock});
  mix({text + size - kBlock, kBlock});
  return hash;
}

[[nodiscard]] inline bool same_key(std::int32_t a, std::int32_t b) { return a == b; }
[[nodiscard]] inline bool same_key(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() > ShortText::kMostBytes) return a == b;
  return ShortText(a.data(), a.size()) == ShortText(b.data(), b.size());
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
    if (count_ * 2 > mask_) grow();
    const std::uint64_t hash = hash_key(key);
    const std::size_t i = slot_of(key, hash);
    if (tags_[i] == kFree) {
      tags_[i] = tag_of(hash);
      entries_[i] = {key, position};
      ++count_;
    }
    return entries_[i].position;
  }

  // kNone when the key was never added.
  [[nodiscard]] std::int32_t find(const Key& key) const {
    const std::size_t i = slot_of(key, hash_key(key));
    return tags_[i] == kFree ? kNone : entries_[i].position;
  }
  [[nodiscard]] bool contains(const Key& key) const { return find(key) != kNone; }

 private:
  static constexpr std::uint32_t kFree = 0;

  struct Entry {
    Key key;
    std::int32_t position;
  };

  static std::uint32_t tag_of(std::uint64_t hash) { return static_cast<std::uint32_t>(hash) | 1; }

  void resize(std::size_t keys) {
    std::size_t size = 16;
    shift_ = 60;
    for (; size < keys * 2; size *= 2) --shift_;
    mask_ = size - 1;
    tags_ = std::make_unique<std::uint32_t[]>(size);
    entries_ = std::make_unique_for_overwrite<Entry[]>(size);
    count_ = 0;
  }

  void grow() {
    const std::unique_ptr<std::uint32_t[]> tags = std::move(tags_);
    const std::unique_ptr<Entry[]> entries = std::move(entries_);
    const std::size_t size = mask_ + 1;
    resize(size);
    for (std::size_t i = 0; i < size; ++i) {
      if (tags[i] != kFree) add(entries[i].key, entries[i].position);
    }
  }

  // Where the key stands, or the free slot where it would.
  [[nodiscard]] std::size_t slot_of(const Key& key, std::uint64_t hash) const {
    const std::uint32_t tag = tag_of(hash);
    std::size_t i = static_cast<std::size_t>(hash >> shift_);
    while (tags_[i] != kFree && !(tags_[i] == tag && same_key(entries_[i].key, key)))
      i = (i + 1) & mask_;
    return i;
  }

  // Apart from the keys and so small that they stay near: most keys are told apart by them alone.
  std::unique_ptr<std::uint32_t[]> tags_;
  std::unique_ptr<Entry[]> entries_;
  std::size_t mask_ = 0;  // one below the number of slots
  std::size_t count_ = 0;
  int shift_ = 60;  // 64 less the bits of a slot's number
};

using TextIndex = FirstIndex<std::string_view>;
using IdIndex = FirstIndex<std::int32_t>;

}  // namespace vantrel
