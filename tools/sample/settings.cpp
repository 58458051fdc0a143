#include "sample/settings.h"

#include <string>

#include "out/out_list.h"
#include "sample/files.h"
#include "sample/logs.h"

namespace vantrel::sample {
namespace {

// |piece|piece|...|, then a line feed.
void put_line(std::string& text, std::initializer_list<std::string_view> pieces) {
  put(text, "");
  for (const std::string_view piece : pieces) put(text, piece);
  text += '\n';
}

std::string main_settings(const SiteTotals& totals) {
  return "|3|http://www.host.example/out.cgi|\n|5|gallery|\n|0||\n|25|\n|2|\n|" +
         std::to_string(totals.usual_unique * 9 / 10) + "|\n";
}

// When little goes back to the trades, or much comes in, other skims hold for all of them.
std::string skim_settings(const SampleSize& size) {
  const int hourly_unique = size.hits_per_minute * 42;
  return "|1|1|1|0|90|4|2|90|70|1|1|" + std::to_string(hourly_unique * 3 / 2) + "|";
}

std::string search_sites() {
  std::string text;
  for (const std::string_view name : kSearchSites) text += std::string(name) + '\n';
  return text + "portal.example*added by hand\n";
}

std::string proxy_list(const SampleSize& size) {
  std::string text;
  for (const std::string& address : proxy_addresses(size)) {
    text += address + (text.size() % 2 == 0 ? ":8080\n" : "\n");
  }
  return text;
}

// What a hit is worth: 36 rules, adding (0), subtracting (1), blocking (2) or without effect (3).
std::string traffic_rules() {
  return "|0|0|3|0|\n|1|0|0|0|\n|2|1|4|0|\n"        // incoming country: good, other, bad
         "|3|0|1|0|\n|4|0|0.5|0|\n|5|1|8|0|\n"      // agent
         "|6|0|2|0|\n|7|2|0|0|\n"                   // request
         "|8|0|5|0|\n|9|3|0|0|\n"                   // unique; not used
         "|10|1|6|0|\n|11|0|0|0|\n"                 // proxy, none
         "|12|0|3|0|\n|13|0|0|0|\n|14|1|4|0|\n"     // country of a click
         "|15|0|1|0|\n|16|0|0.5|0|\n|17|1|8|0|\n"   // agent
         "|18|0|2|0|\n|19|2|0|0|\n"                 // request
         "|20|0|1.5|0|\n|21|3|0|0|\n"               // flag; not used
         "|22|1|6|0|\n|23|0|0|0|\n"                 // proxy, none
         "|24|0|1|0|\n|25|1|2|0|\n"                 // cookie, none
         "|26|0|0.25|0|\n|27|1|0.25|0|\n"           // tag, none
         "|28|0|1|0|\n|29|1|3|0|\n|30|0|0.5|0|\n"   // tag: good, bad, starred
         "|31|0|1|0|\n|32|0|2|0|\n|33|0|0.75|0|\n"  // to the gallery, to a trade, recorded
         "|34|1|3|0|\n|35|0|1|0|\n";                // many clicks, no referrer
}

constexpr std::array<std::string_view, 20> kCountries{"US", "DE", "GB", "FR", "CA", "JP", "NL",
                                                      "IT", "BR", "CN", "ES", "AU", "SE", "PL",
                                                      "IN", "MX", "CH", "KR", "DK", "NO"};

std::string country_rating() {
  std::string text;
  for (std::size_t i = 0; i < kCountries.size() - 3; ++i) {
    put_line(text, {i < 7 ? "1" : i % 3 == 0 ? "3" : "2", kCountries[i]});
  }
  return text;
}

// Fragments that occur, then such that no agent has: a list as long as asked for.
std::string agent_rating(const SampleSize& size) {
  constexpr std::array<std::array<std::string_view, 2>, 6> kFragments{{{"3", "crawler"},
                                                                       {"1", "Surfer/1"},
                                                                       {"1", "glance"},
                                                                       {"2", "compass"},
                                                                       {"3", "pocket 9"},
                                                                       {"1", "x86_64"}}};
  std::string text;
  for (int i = 0; i < size.agent_fragments; ++i) {
    if (const auto known = static_cast<std::size_t>(i); known < kFragments.size()) {
      put_line(text, {kFragments[known][0], kFragments[known][1]});
    } else {
      put_line(text, {i % 2 == 0 ? "1" : "3", "RareAgent-" + std::to_string(i)});
    }
  }
  return text;
}

// Ascending over the addresses visitors have, every eighth range with a gap behind it.
std::string address_table(const SampleSize& size) {
  if (size.ip_ranges == 0) return {};
  constexpr std::uint32_t kFirst = 1u << 24;
  constexpr std::uint32_t kEnd = 224u << 24;
  const std::uint32_t step = (kEnd - kFirst) / static_cast<std::uint32_t>(size.ip_ranges);
  Random random = random_for(size, "addresses");
  const Zipf country(kCountries.size());
  std::string text;
  text.reserve(static_cast<std::size_t>(size.ip_ranges) * 28);
  std::uint32_t first = kFirst;
  for (int i = 0; i < size.ip_ranges; ++i) {
    const std::uint32_t next = kFirst + step * (static_cast<std::uint32_t>(i) + 1) +
                               (step > 1 ? random.below(step / 2) : 0);
    const std::uint32_t last = i % 8 == 7 ? first + (next - first) / 2 : next - 1;
    put(text, "");
    put(text, first);
    put(text, last);
    put(text, kCountries[country.draw(random)]);
    text += '\n';
    first = next;
  }
  return text;
}

std::string out_weights() {
  std::string text;
  int rank = 0;
  for (const char* weight : {"1500", "900", "600", "400", "300", "200", "150", "100", "75", "50",
                             "30", "20", "10", "5"}) {
    text += std::to_string(++rank) + '|' + weight + "|\n";
  }
  return text;
}

// The trades whose score asks for them have all three caps, the others at most one.
std::string trade_caps(const Model& model) {
  std::string text;
  for (std::size_t id = kReservedCount; id < model.names.size(); ++id) {
    const std::size_t number = id - kReservedCount;
    const std::string text_id = std::to_string(id);
    if (number % 7 == 3) {
      put_line(text, {text_id, "1", "20"});
      put_line(text, {text_id, "2", "-1"});
      put_line(text, {text_id, "3", "300"});
    } else if (number % 7 == 5) {
      put_line(text, {text_id, "3", "250"});
    }
  }
  return text;
}

// Yesterday's traffic is a tenth below today's: the day's maxima are passed within the day.
std::string alert_settings(const SiteTotals& totals) {
  std::string text;
  put(text, "");
  for (const std::string_view piece :
       {"./mail/sendmail.sh", "vantrel@host.example", "webmaster@host.example", "0"}) {
    put(text, piece);
  }
  const std::uint64_t hourly = totals.incoming / 24;
  for (const std::uint64_t threshold :
       {totals.incoming / 4, totals.incoming * 105 / 100, hourly / 10, hourly * 13 / 10,
        totals.busiest_incoming * 105 / 100}) {
    put(text, static_cast<std::int64_t>(threshold));
    put(text, "0");
  }
  return text;
}

// The programs the run starts leave a trace, stamped with the run they belong to.
void write_programs(const std::filesystem::path& site) {
  const std::string stamp = "#!/bin/sh\nread -r stamp < l/sys/cron.last\n";
  for (const char* name : {"sh_sync.cgi", "sh_hta.cgi", "sh_top.cgi"}) {
    write_script(site / name, stamp + "echo \"$stamp " + name + " $*\" >> companion.log\n");
  }
  write_script(site / "mail/sendmail.sh",
               "#!/bin/sh\n# Stands in for a mail program: keeps what it is given.\n" +
                   stamp.substr(stamp.find('\n') + 1) +
                   "{ echo \"=== $stamp sendmail.sh $*\"; cat; echo; } >> mail/outbox\n");
}

}  // namespace

void write_settings(const std::filesystem::path& site, const Model& model,
                    const SiteTotals& totals) {
  const std::filesystem::path folder = site / "d";
  write_file(folder / "set", main_settings(totals));
  write_file(folder / "ds", skim_settings(model.size));
  write_file(folder / "se", search_sites());
  write_file(folder / "proxy", proxy_list(model.size));
  write_file(folder / "traffic.set", traffic_rules());
  write_file(folder / "geo.rating", country_rating());
  write_file(folder / "ip.psv", address_table(model.size));
  write_file(folder / "agent.rating", agent_rating(model.size));
  write_file(folder / "request.rating",
             "|1|/|\n|1|/gallery/17.html|\n|3|/bad.cgi?probe=1|\n|2|/top.html|\n");
  write_file(folder / "tags.rating", "|1|thumb|\n|1|gal12|\n|3|Foot|\n|2|banner|\n");
  write_file(folder / "out.set", out_weights());
  write_file(folder / "out.mod", "|100|100|100|3|2|1|0||0|rin60*2+uin24|\n");
  write_file(folder / "caps", trade_caps(model));
  write_file(folder / "nm/track", "|1|");
  write_file(folder / "alerts", alert_settings(totals));
  write_file(folder / "tpl/index.html", "<html><body>##TOPLIST##</body></html>\n");
  write_file(folder / "css/site.css", "body { font: 9pt sans-serif }\n");
  write_file(folder / "out.lst", encode_out_list(OutListHeader{}, {}, 0));
  write_programs(site);
}

}  // namespace vantrel::sample
