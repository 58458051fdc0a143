// The hit logs of the sample site.
#pragma once

#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "sample/model.h"

namespace vantrel::sample {

// The proxies of d/proxy; some hits come from them.
[[nodiscard]] std::vector<std::string> proxy_addresses(const SampleSize& size);

class LogWriter {
 public:
  // The model must outlive the writer.
  explicit LogWriter(const Model& model);

  // Both logs of the minute the moment lies in. Throws on failure.
  void write_minute(const std::filesystem::path& site, std::time_t moment);

 private:
  void put_in_record(Random& random, std::time_t moment);
  void put_out_record(Random& random, std::time_t moment);
  void put_address(Random& random);
  void put_origin(Random& random, std::string_view origin);
  void put_agent(Random& random);
  void put_proxy_flag(Random& random);
  void put_end(Random& random, std::time_t moment);
  [[nodiscard]] std::uint32_t draw_trade(Random& random) const;
  [[nodiscard]] std::string_view draw_origin(Random& random, std::string_view other) const;

  const Model& model_;
  std::vector<std::string> proxies_;
  std::vector<std::string> agents_;
  Zipf agent_popularity_;
  std::string text_;
};

}  // namespace vantrel::sample
