#include "soak_traffic.h"

#include <cctype>
#include <vector>

#include "store/trade_record.h"

namespace soak {
namespace {

namespace slot = vantrel::slot;

// What is drawn for a field: its text, and the rules (counted from the first of its group, -1 for
// none) that follow from it.
struct Choice {
  std::string text;
  int rule = -1;
  int second_rule = -1;
};

// A record in the making.
class Record {
 public:
  explicit Record(std::string& log) : log_(log) { log_ += '|'; }

  void field(const std::string& text) { log_.append(text).append("|"); }
  void apply(int number) {
    if (number < 0) return;
    const Rule r = rule(number);
    blocked_ = blocked_ || r.operation == 2;
    if (r.operation == 0) score_ += r.value;
    if (r.operation == 1) score_ -= r.value;
  }
  void apply(int group, const Choice& choice) {
    if (choice.rule >= 0) apply(group + choice.rule);
    if (choice.second_rule >= 0) apply(group + choice.second_rule);
  }
  // The new sum is cut to a whole number, not the score.
  void end(std::vector<std::int32_t*> sums) {
    log_ += '\n';
    const float score = blocked_ ? 0.0f : score_;
    for (std::int32_t* sum : sums) {
      *sum = static_cast<std::int32_t>(static_cast<float>(*sum) + score);
    }
  }

 private:
  std::string& log_;
  float score_ = 10.0f;
  bool blocked_ = false;
};

class Dice {
 public:
  explicit Dice(std::mt19937& random) : random_(random) {}

  std::size_t below(std::size_t n) { return random_() % n; }
  bool one_in(std::size_t n) { return below(n) == 0; }
  template <typename List>
  const auto& of(const List& list) {
    return list[below(std::size(list))];
  }

 private:
  std::mt19937& random_;
};

std::string capitals(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

struct Address {
  Choice choice;
  bool listed_proxy = false;
};

Address draw_address(Dice& dice) {
  if (dice.one_in(20)) {
    return dice.one_in(2) ? Address{{"1.9.9.9", 0}, true} : Address{{"3.9.9.9", 2}, true};
  }
  // By first part: before the table, good, neutral, bad, gap, not rated, behind the table.
  constexpr int kRules[] = {1, 0, 1, 2, 1, -1, 1};
  const std::size_t first = dice.below(std::size(kRules));
  return {{std::to_string(first) + "." + std::to_string(dice.below(256)) + ".7." +
               std::to_string(dice.below(256)),
           kRules[first]},
          false};
}

Choice draw_agent(Dice& dice) {
  static const Choice kAgents[] = {{"Browser/5.0 (FINE machine)", 0},
                                   {"fair/1.0", 1},
                                   {"Something", 1},
                                   {"very foul thing", 2},
                                   {"foul but fine", 0},
                                   {"", 1}};
  return dice.of(kAgents);
}

Choice draw_request(Dice& dice) {
  static const Choice kRequests[] = {{"/good", 0}, {"/bad", 1}, {"/BOTH", 0, 1}, {"/", -1}, {""}};
  return dice.of(kRequests);
}

// Rules counted from the one for a tag that is there.
void draw_tag(Dice& dice, Record& record) {
  static const Choice kTags[] = {{"", 1}, {"plain", 0}, {"gold", 0, 2}, {"Dross", 0, 3}};
  const Choice tag = dice.of(kTags);
  const bool starred = dice.one_in(3);
  record.field(starred ? "*" + tag.text : tag.text);
  record.apply(starred ? 26 : 26 + tag.rule);
  if (starred) record.apply(30);
  if (tag.second_rule >= 0) record.apply(26 + tag.second_rule);
}

// A name of a hit and the position it is credited to; one that is no trade's now and then.
std::size_t draw_name(Dice& dice, std::string& name) {
  if (dice.one_in(12)) {
    name = "Nobody.example";
    return kUnknown;
  }
  if (dice.one_in(12)) {
    name = "searcher";
    return kListed;
  }
  const std::size_t position = dice.below(kEntries);
  name = dice.one_in(2) ? name_of(position) : capitals(name_of(position));
  return position;
}

std::size_t draw_id(Dice& dice, std::int32_t& id) {
  const bool unknown = dice.one_in(12);
  const std::size_t position = unknown ? kUnknown : dice.below(kEntries);
  id = unknown ? 99999 : id_of(position);
  return position;
}

// The address, which has the first rules of a direction; is it that of a listed proxy?
bool add_address(Dice& dice, Record& record, int first_rule) {
  const Address address = draw_address(dice);
  record.field(address.choice.text);
  record.apply(first_rule, address.choice);
  return address.listed_proxy;
}

// The agent with its rules from the given one on, and the proxy flag; did the hit come by a proxy?
bool add_agent_and_proxy(Dice& dice, Record& record, int agent_rule, int proxy_rule, bool listed) {
  const Choice agent = draw_agent(dice);
  record.field(agent.text);
  record.apply(agent_rule, agent);
  const bool flagged = dice.one_in(10);
  record.field(flagged ? "1" : dice.one_in(2) ? "0" : "");
  const bool proxy = flagged || listed;
  record.apply(proxy ? proxy_rule : proxy_rule + 1);
  return proxy;
}

void add_in(Dice& dice, Minute& minute) {
  Record record(minute.in_log);
  const bool listed = add_address(dice, record, 0);
  std::string name;
  Counts& trade = minute.counts[draw_name(dice, name)];
  record.field(name);
  ++trade[slot::rin];
  record.field("http://page.example/");
  const bool unique = !dice.one_in(3);
  record.field(unique ? "0" : "1");
  if (unique) {
    ++trade[slot::uin];
    record.apply(8);
  }
  if (add_agent_and_proxy(dice, record, 3, 10, listed)) ++trade[slot::proxy_in];
  const Choice request = draw_request(dice);
  record.field(request.text);
  record.apply(6, request);
  const bool marked = dice.one_in(15);
  record.field(marked ? "x" : "");
  if (marked) ++minute.counts[4][slot::rin];
  for (int i = 0; i < 3; ++i) record.field("rest");
  record.end({&trade[slot::rti]});
}

std::size_t draw_source(Dice& dice, std::string& name) {
  if (dice.one_in(8)) {
    name = "noref";  // listed in d/se
    return kListed;
  }
  if (dice.one_in(8)) {
    name = "NoCookie";
    return kUnknown;
  }
  return draw_name(dice, name);
}

// The fields of a click from the seventh on; name is its source.
void add_details(Dice& dice, Minute& minute, Record& record, Counts& source,
                 const std::string& name) {
  const auto clicks = static_cast<int>(dice.below(9));
  record.field(std::to_string(clicks));
  if (clicks <= kCefLimit) ++source[slot::cef];
  if (clicks > kCefLimit) record.apply(34);
  std::int32_t recorded = 0;
  if (dice.one_in(2)) {
    ++minute.counts[draw_id(dice, recorded)][slot::rec];
    record.field(std::to_string(recorded));
    if (recorded > 10) record.apply(33);
  } else {
    record.field("");
  }
  const bool zero = dice.one_in(2);
  record.field(zero ? "0" : "1");
  if (zero) record.apply(20);
  const Choice request = draw_request(dice);
  record.field(request.text);
  record.apply(18, request);
  const bool text = dice.one_in(2);
  record.field(text ? "something" : "");
  if (text && name == "noref") record.apply(35);
  for (int i = 0; i < 3; ++i) record.field("rest");
}

void add_out(Dice& dice, Minute& minute) {
  Record record(minute.out_log);
  const bool listed = add_address(dice, record, 12);
  std::string name;
  Counts& source = minute.counts[draw_source(dice, name)];
  record.field(name);
  ++source[slot::clk];
  record.apply(name == "NoCookie" ? 25 : 24);
  std::int32_t id = 0;
  const std::size_t to = draw_id(dice, id);
  Counts& target = minute.counts[to];
  record.field(std::to_string(id));
  ++target[slot::out];
  if (id == 1) {
    ++source[slot::ctg];
    record.apply(31);
  }
  if (to >= kReserved) {
    ++source[slot::ctt];
    record.apply(32);
  }
  if (add_agent_and_proxy(dice, record, 15, 22, listed)) {
    ++target[slot::proxy_out];
    ++source[slot::proxy_clk];
  }
  draw_tag(dice, record);
  add_details(dice, minute, record, source, name);
  record.end({&target[slot::rto], &source[slot::rtc]});
}

}  // namespace

Minute make_minute(std::mt19937& random) {
  Minute minute;
  Dice dice(random);
  if (dice.one_in(20)) return minute;  // nobody came
  for (std::size_t n = dice.below(25); n > 0; --n) add_in(dice, minute);
  for (std::size_t n = dice.below(25); n > 0; --n) add_out(dice, minute);
  return minute;
}

}  // namespace soak
