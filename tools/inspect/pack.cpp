#include "pack.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace vantrel::inspect {
namespace {

// Below this a text is hardly longer than its number in the pool.
constexpr std::size_t kShortest = 8;

bool is_table(const Json& list) {
  if (list.size() < 2 || !list[0].is_object() || list[0].empty()) return false;
  return std::all_of(list.begin(), list.end(), [&](const Json& row) {
    return row.is_object() && row.size() == list[0].size() &&
           std::equal(row.items().begin(), row.items().end(), list[0].items().begin(),
                      [](const auto& a, const auto& b) { return a.key() == b.key(); });
  });
}

bool is_plain(const Json& values) {
  return std::all_of(values.begin(), values.end(),
                     [](const Json& value) { return value.is_primitive(); });
}

bool are_counts(const Json& values) {
  return values.size() > 1 && std::all_of(values.begin(), values.end(), is_count);
}

std::string digits(const Json& counts) {
  std::string out = "\"";
  for (const Json& count : counts) add_digits(count.get<std::uint64_t>(), out);
  return out + '"';
}

void add_number(long number, std::string& out) {
  out.append("[").append(std::to_string(number)).append("]");
}

}  // namespace

std::string Packer::shapes() const { return joined(shapes_); }
std::string Packer::pool() const { return joined(pool_); }

void Packer::pack(const Json& value, std::string& out) {
  if (value.is_structured() && value.empty()) {
    const std::string text = page_text(value);
    if (pooled(text) < 0) static_cast<void>(pooled(text));
    add_number(pooled(text), out);
  } else if (value.is_object()) {
    pack_object(value, out);
  } else if (value.is_array()) {
    is_table(value) ? pack_table(value, out) : pack_list(value, out);
  } else {
    pack_leaf(value, out);
  }
}

long Packer::pooled(const std::string& text) {
  const auto [entry, is_new] = seen_.emplace(text, -1);
  if (!is_new && entry->second < 0) {
    entry->second = static_cast<long>(pool_.size());
    pool_.push_back(text);
  }
  return entry->second;
}

long Packer::shape_of(const Json& object) {
  Json keys = Json::array();
  for (const auto& item : object.items()) keys.push_back(item.key());
  const std::string text = page_text(keys);
  const auto [shape, is_new] = shape_numbers_.emplace(text, shapes_.size());
  if (is_new) shapes_.push_back(text);
  return shape->second;
}

void Packer::pack_leaf(const Json& value, std::string& out) {
  const std::string text = page_text(value);
  const long number = text.size() < kShortest ? -1 : pooled(text);
  if (number < 0) {
    out += text;
  } else {
    add_number(number, out);
  }
}

void Packer::pack_object(const Json& object, std::string& out) {
  out.append("[").append(std::to_string(shape_of(object)));
  if (are_counts(object)) {
    out.append(",").append(digits(object));
  } else {
    for (const Json& value : object) {
      out += ',';
      pack(value, out);
    }
  }
  out += ']';
}

void Packer::pack_list(const Json& list, std::string& out) {
  const long number = is_plain(list) ? pooled(page_text(list)) : -1;
  if (number >= 0) {
    add_number(number, out);
  } else if (are_counts(list)) {
    out.append("[").append(digits(list)).append("]");
  } else {
    out += "[0";
    for (const Json& item : list) {
      out += ',';
      pack(item, out);
    }
    out += ']';
  }
}

void Packer::pack_table(const Json& rows, std::string& out) {
  std::vector<Json> columns(rows[0].size(), Json::array());
  for (const Json& row : rows) {
    auto column = columns.begin();
    for (const Json& value : row) (column++)->push_back(value);
  }
  out.append("[-").append(std::to_string(shape_of(rows[0])));
  for (const Json& column : columns) {
    out += ',';
    const long number = is_plain(column) ? pooled(page_text(column)) : -1;
    if (number >= 0) {
      out += std::to_string(number);
    } else if (are_counts(column)) {
      out += digits(column);
    } else {
      const char* before = "[";
      for (const Json& value : column) {
        out += before;
        pack(value, out);
        before = ",";
      }
      out += ']';
    }
  }
  out += ']';
}

bool is_count(const Json& value) {
  return value.is_number_integer() && value >= 0 && value <= std::int64_t{1} << 48;
}

void add_digits(std::uint64_t count, std::string& out, bool last) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  if (count >= 32) add_digits(count / 32, out, false);
  out += kDigits[count % 32 + (last ? 0 : 32)];
}

std::string joined(const std::vector<std::string>& texts) {
  std::string out = "[";
  for (const std::string& text : texts) {
    if (out.size() > 1) out += ',';
    out += text;
  }
  return out + ']';
}

std::string page_text(const Json& value) {
  std::string out;
  for (const char c : value.dump(-1, ' ', true, Json::error_handler_t::replace)) {
    if (c == '<') {
      out += "\\u003c";
    } else {
      out += c;
    }
  }
  return out;
}

}  // namespace vantrel::inspect
