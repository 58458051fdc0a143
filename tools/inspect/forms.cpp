#include "forms.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace vantrel::inspect {
namespace {

constexpr char kCountInText = '\x01';

// A structure taken apart.
class Parts {
 public:
  explicit Parts(Packer& packer) : packer_(packer) {}

  Json form_of(const Json& value, std::string_view key);

  std::string digits;
  std::vector<std::string> others;

 private:
  Json form_of_number(const Json& number);
  Json form_of_text(const std::string& text);
  Json other(const Json& value);

  Packer& packer_;
};

// Names and values are the site's, all other texts the inspector's: these are few, but for numbers.
bool is_of_site(std::string_view key) {
  return key == "name" || key == "value" || key == "meaning";
}

Json Parts::form_of(const Json& value, std::string_view key) {
  if (key == "hours" || key == "days") return other(value);  // better by column
  if (value.is_object()) {
    Json form = Json::object();
    for (const auto& item : value.items()) form[item.key()] = form_of(item.value(), item.key());
    return form;
  }
  if (value.is_array()) {
    Json form = Json::array();
    for (const Json& item : value) form.push_back(form_of(item, ""));
    return form;
  }
  if (value.is_number()) return form_of_number(value);
  if (value.is_boolean()) {
    add_digits(value == true ? 1 : 0, digits);
    return true;
  }
  if (!value.is_string()) return value;
  return is_of_site(key) ? other(value) : form_of_text(value);
}

Json Parts::form_of_number(const Json& number) {
  if (number == -1) return number;
  const double rounded = std::round(number.get<double>() * 10000) / 10000;
  const bool whole = rounded >= 0 && rounded < 1e9 && rounded == std::floor(rounded);
  if (!is_count(number) && !whole) return other(number.is_number_float() ? Json(rounded) : number);
  add_digits(whole ? static_cast<std::uint64_t>(rounded) : number.get<std::uint64_t>(), digits);
  return 0;
}

// Leading zeros belong to the text, and so do numbers too large for the browser.
Json Parts::form_of_text(const std::string& text) {
  if (text.find(kCountInText) != text.npos) return other(text);
  std::string form;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t begin = std::min(rest.find_first_of("123456789"), rest.size());
    form += rest.substr(0, begin);
    rest.remove_prefix(begin);
    const std::string number(rest.substr(0, rest.find_first_not_of("0123456789")));
    rest.remove_prefix(number.size());
    if (number.empty() || number.size() > 9) {
      form += number;
    } else {
      form += kCountInText;
      add_digits(std::stoul(number), digits);
    }
  }
  return form;
}

Json Parts::other(const Json& value) {
  std::string text;
  packer_.pack(value, text);
  const auto before = std::find(others.begin(), others.end(), text);
  if (before != others.end()) return 2 + (before - others.begin());
  others.push_back(text);
  return 1;
}

}  // namespace

std::size_t Forms::number_of(Json form) {
  share_details(form);
  const auto [entry, is_new] = numbers_.emplace(page_text(form), forms_.size());
  if (is_new) packer_.pack(form, forms_.emplace_back());
  return entry->second;
}

void Forms::share_details(Json& form) {
  if (!form.is_structured()) return;
  for (const auto& item : form.items()) {
    if (item.key() == "details" && !item.value().empty()) {
      item.value() = number_of(item.value());
    } else {
      share_details(item.value());
    }
  }
}

std::string Forms::pack(const Json& structure) {
  Parts parts(packer_);
  const std::size_t form = number_of(parts.form_of(structure, ""));
  std::string out = "[";
  out.append(std::to_string(form)).append(",\"").append(parts.digits).append("\"");
  for (const std::string& other : parts.others) out.append(",").append(other);
  return out + ']';
}

}  // namespace vantrel::inspect
