// Thousands of structures that differ in little but their figures, for the page: what they have in
// common is a form, written once; of each only the form's number, its counts and what else differs.
//
//   [form, "digits", other...]
//
// A form is the structure with 0 in the place of a count, 1 in that of the next other value and
// 2 + n where other value n comes again; true stands for the count 1 as true, 0 as false, and in
// texts a count is U+0001. Counts are taken in the order
// of the structure. "details" that are a number are those of that form. Fractions keep four
// decimals, more than the page shows; all else is kept whole.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "pack.h"

namespace vantrel::inspect {

class Forms {
 public:
  explicit Forms(Packer& packer) : packer_(packer) {}

  [[nodiscard]] std::string pack(const Json& structure);
  // All forms, packed, as a JSON list.
  [[nodiscard]] std::string forms() const { return joined(forms_); }

 private:
  [[nodiscard]] std::size_t number_of(Json form);
  void share_details(Json& form);

  Packer& packer_;
  std::vector<std::string> forms_;
  std::unordered_map<std::string, std::size_t> numbers_;  // by the form's text
};

}  // namespace vantrel::inspect
