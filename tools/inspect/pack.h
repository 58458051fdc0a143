// JSON in less room, for the page: what comes again is written once, lists of like objects by
// column, rows of counts as digits. Nothing is lost. What was packed refers to "shapes" (lists of
// keys) and "pool" (texts and lists of plain values):
//
//   [n]             is entry n of the pool
//   ["digits"]      is a list of whole numbers from 0
//   [0, item...]    is a list
//   [k, value...]   is an object with the keys of shape k, from 1
//   [k, "digits"]   is one of more than one key, whose values are such numbers
//   [-k, column...] is a list of objects with the keys of shape k: a column is the number of a list
//                   in the pool, "digits", or the list itself, one item a row
//
// and everything else stands for itself. Digits are of base 32, from the largest, of the letters,
// figures, '-' and '_' of base 64 in its order; those of the second half are followed by another
// one of the same number.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "screen.h"

namespace vantrel::inspect {

class Packer {
 public:
  // Appends the packed form of value to out.
  void pack(const Json& value, std::string& out);

  // All that was packed refers to, as JSON lists. Shape 0 is not used.
  [[nodiscard]] std::string shapes() const;
  [[nodiscard]] std::string pool() const;

 private:
  // The number of a text in the pool, which it enters when it is there the second time; before
  // that -1.
  [[nodiscard]] long pooled(const std::string& text);
  [[nodiscard]] long shape_of(const Json& object);
  void pack_leaf(const Json& value, std::string& out);
  void pack_object(const Json& object, std::string& out);
  void pack_list(const Json& list, std::string& out);
  void pack_table(const Json& rows, std::string& out);

  std::vector<std::string> shapes_{"[]"};
  std::vector<std::string> pool_;
  std::unordered_map<std::string, long> shape_numbers_, seen_;
};

// A whole number from 0 that survives the browser's arithmetic.
[[nodiscard]] bool is_count(const Json& value);
// Appends it as digits.
void add_digits(std::uint64_t count, std::string& out, bool last = true);

// A JSON list of JSON texts.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts);

// ASCII JSON that can stand in a page: no '<' that could begin markup.
[[nodiscard]] std::string page_text(const Json& value);

}  // namespace vantrel::inspect
