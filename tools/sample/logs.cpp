#include "sample/logs.h"

#include <algorithm>
#include <array>

#include "sample/files.h"
#include "traffic/hit_logs.h"

namespace vantrel::sample {
namespace {

constexpr std::array<std::string_view, 8> kRequests{
    "/",         "/index.html", "/gallery/17.html", "/gallery/autumn-leaves-in-the-park.html",
    "/top.html", "/free-tour/", "/bad.cgi?probe=1", "/archive/2019/07/harbour-at-dawn.html"};
constexpr std::array<std::string_view, 8> kTags{"",    "",      "thumb",  "*thumb",
                                                "top", "*foot", "banner", "gal12"};
constexpr std::array<std::string_view, 6> kPlatforms{
    "X11; Linux x86_64",      "Macintosh; Intel 10.15", "Windows 10.0; Win64; x64",
    "Tablet; Wide 12; en-gb", "Phone; Pocket 9; de-de", "Desktop 7; 32-bit; fr-fr"};
constexpr std::array<std::string_view, 5> kLanguages{"en-us", "de-de", "fr-fr", "es-mx", "ja-jp"};

std::vector<std::string> make_agents(const SampleSize& size) {
  constexpr std::array<std::string_view, 6> kBrowsers{"Surfer",   "Wander", "Glance",
                                                      "PageView", "Quick",  "Compass"};
  Random random = random_for(size, "agents");
  std::vector<std::string> agents;
  // The busier the site, the more different agents it sees.
  const int count = std::clamp(size.hits_per_minute / 20, 60, 4000);
  for (int i = 0; i < count; ++i) {
    const std::string version = std::to_string(1 + random.below(99));
    if (i % 15 == 14) {
      agents.push_back("linkcrawler-bot/" + version + ".0 (+http://crawl" + std::to_string(i) +
                       ".example/about-this-robot.html)");
    } else {
      // One behind the other: within an expression every compiler has an order of its own.
      const std::string browser(random.one_of(kBrowsers));
      const std::string platform(random.one_of(kPlatforms));
      agents.push_back("Mozilla/5.0 (" + platform + "; rv:" + version +
                       ") Engine/2010.1 (like Kernel) " + browser + "/" + version + "." +
                       std::to_string(i));
    }
  }
  return agents;
}

}  // namespace

std::vector<std::string> proxy_addresses(const SampleSize& size) {
  Random random = random_for(size, "proxies");
  std::vector<std::string> addresses;
  for (int i = 0; i < size.proxies; ++i) {
    std::string address = std::to_string(1 + random.below(223));
    for (int part = 0; part < 3; ++part) address += '.' + std::to_string(random.below(256));
    addresses.push_back(address);
  }
  return addresses;
}

LogWriter::LogWriter(const Model& model)
    : model_(model),
      proxies_(proxy_addresses(model.size)),
      agents_(make_agents(model.size)),
      agent_popularity_(agents_.size()) {}

void LogWriter::write_minute(const std::filesystem::path& site, std::time_t moment) {
  const std::string stamp = format_time(kMinuteStampFormat, moment);
  const std::uint64_t records = records_in_hour(model_.size, local_time(moment).tm_hour);
  const auto number = static_cast<std::uint64_t>(epoch_minute(moment));
  text_.clear();
  Random incoming = random_for(model_.size, "in", number);
  for (std::uint64_t i = 0; i < records; ++i) put_in_record(incoming, moment);
  write_file(site / in_log_path(stamp), text_);
  text_.clear();
  Random outgoing = random_for(model_.size, "out", number);
  for (std::uint64_t i = 0; i < records; ++i) put_out_record(outgoing, moment);
  write_file(site / out_log_path(stamp), text_);
}

// |address|name|page|flag|agent|proxy|request|marker|moment|language|session|
void LogWriter::put_in_record(Random& random, std::time_t moment) {
  put(text_, "");
  put_address(random);
  const std::string_view origin = draw_origin(random, "noref");
  put_origin(random, origin);
  text_ += origin == "noref" ? "" : "http://www.";
  text_ += origin == "noref" ? "" : origin;
  put(text_, origin == "noref" ? "" : "/links/page-of-friends.html");
  put(text_, random.percent(kUniquePercent) ? "0" : "1");
  put_agent(random);
  put_proxy_flag(random);
  put(text_, random.one_of(kRequests));
  put(text_, random.percent(kMarkedPercent) ? "m" : "");
  put_end(random, moment);
}

// |address|origin|id|agent|proxy|tag|click|recorded id|flag|request|text|moment|language|session|
void LogWriter::put_out_record(Random& random, std::time_t moment) {
  put(text_, "");
  put_address(random);
  const std::string_view origin =
      random.percent(kNoCookiePercent) ? "nocookie" : draw_origin(random, "noref");
  put_origin(random, origin);
  put(text_, random.percent(kGalleryPercent) ? 1 : draw_trade(random));
  put_agent(random);
  put_proxy_flag(random);
  put(text_, random.one_of(kTags));
  put(text_, 1 + random.below(1 + random.below(40)));
  if (random.percent(20)) {
    put(text_, draw_trade(random));
  } else {
    put(text_, "");
  }
  put(text_, random.percent(60) ? "0" : "1");
  put(text_, random.one_of(kRequests));
  put(text_, origin == "noref" && random.percent(30) ? "bookmark" : "");
  put_end(random, moment);
}

void LogWriter::put_address(Random& random) {
  if (!proxies_.empty() && random.below(64) == 0) {
    put(text_, random.one_of(proxies_));
    return;
  }
  const std::uint64_t bits = random.next();
  text_ += std::to_string(1 + (bits >> 40) % 223);
  text_ += '.';
  text_ += std::to_string((bits >> 16) & 255);
  text_ += '.';
  text_ += std::to_string((bits >> 8) & 255);
  text_ += '.';
  put(text_, std::to_string(bits & 255));
}

// Some request scripts keep the capitals visitors typed.
void LogWriter::put_origin(Random& random, std::string_view origin) {
  const std::size_t start = text_.size();
  put(text_, origin);
  if (random.below(50) == 0 && text_[start] >= 'a' && text_[start] <= 'z') {
    text_[start] = static_cast<char>(text_[start] - 'a' + 'A');
  }
}

void LogWriter::put_agent(Random& random) { put(text_, agents_[agent_popularity_.draw(random)]); }

void LogWriter::put_proxy_flag(Random& random) {
  put(text_, random.percent(kProxyPercent) ? "1" : "0");
}

// What the run does not look at.
void LogWriter::put_end(Random& random, std::time_t moment) {
  put(text_, moment - moment % 60 + random.below(60));
  put(text_, random.one_of(kLanguages));
  for (int part = 0; part < 2; ++part) {
    std::uint64_t bits = random.next();
    for (int i = 0; i < 16; ++i, bits >>= 4) text_ += "0123456789abcdef"[bits & 15];
  }
  text_ += "|\n";
}

std::uint32_t LogWriter::draw_trade(Random& random) const {
  return model_.by_rank[model_.popularity.draw(random)];
}

std::string_view LogWriter::draw_origin(Random& random, std::string_view other) const {
  std::uint32_t drawn = random.below(100);
  if (drawn < kNoReferrerPercent) return other;
  drawn -= kNoReferrerPercent;
  if (drawn < kUnknownPercent) return drawn % 2 == 0 ? "blog.example" : "forum.example";
  drawn -= kUnknownPercent;
  if (drawn < kSearchPercent) return kSearchSites[drawn % kSearchSites.size()];
  return model_.names[draw_trade(random)];
}

}  // namespace vantrel::sample
