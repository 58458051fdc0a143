// The inner pieces of a run one by one, on a sample site of the size of a busy one.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/text.h"
#include "out/expression.h"
#include "out/out_settings.h"
#include "out/scoring.h"
#include "sample_site.h"
#include "settings/main_settings.h"
#include "settings/rating_tables.h"
#include "settings/traffic_settings.h"
#include "sizes.h"
#include "store/summary.h"
#include "store/trade_index.h"
#include "traffic/agent_rating.h"
#include "traffic/hit_logs.h"
#include "traffic/hit_processing.h"

namespace {

using namespace vantrel;

constexpr const char* kLogMinute = "26-320-12-06";  // the one before bench::kNow
constexpr const char* kFormula = "(uin60*3+cef24/2+clk07)*(100+ctt60)/(out24+1)-rec60";

// What the pieces work on, loaded once.
struct Loaded {
  TradeStore store;
  TrafficSettings traffic;
  RatingTables ratings;
  MainSettings settings;
  std::vector<std::string> agents;  // of the incoming log, in their order
};

Loaded& loaded() {
  static Loaded data;
  return data;
}

void require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

void load_site() {
  Loaded& data = loaded();
  require(load_trade_index(data.store) && build_work_array(data.store) &&
              load_summary(data.store) && load_traffic_settings(data.traffic) &&
              load_rating_tables(data.ratings) && load_main_settings(data.settings),
          "the sample site cannot be loaded");
  LogReader log;
  read_fields<kInFields>(log, in_log_path(kLogMinute), [&data](const auto& record) {
    if (record.complete()) data.agents.emplace_back(record[5]);
  });
  require(!data.agents.empty(), "the sample site has no log");
}

void process_log(benchmark::State& state, bool incoming) {
  Loaded& data = loaded();
  HitProcessor processor(data.store, data.traffic, data.ratings, data.settings.cef_limit);
  FileBuffer log;
  const std::string path = incoming ? in_log_path(kLogMinute) : out_log_path(kLogMinute);
  require(log.read(path.c_str()), "no log");
  const std::string_view text = log.text();
  for (auto _ : state) {
    incoming ? processor.process_in_file(path) : processor.process_out_file(path);
  }
  state.SetItemsProcessed(state.iterations() * std::count(text.begin(), text.end(), '\n'));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void incoming_log(benchmark::State& state) { process_log(state, true); }
BENCHMARK(incoming_log);

void outgoing_log(benchmark::State& state) { process_log(state, false); }
BENCHMARK(outgoing_log);

// Reading, lower-casing and splitting alone.
void split_log(benchmark::State& state) {
  LogReader log;
  std::int64_t records = 0;
  for (auto _ : state) {
    read_fields<kInFields>(log, in_log_path(kLogMinute), [&records](const auto& record) {
      benchmark::DoNotOptimize(record.bars);
      records += record.complete();
    });
  }
  state.SetItemsProcessed(records);
}
BENCHMARK(split_log);

void country_of(benchmark::State& state) {
  const IpTable& table = loaded().ratings.ip;
  std::mt19937 random(1);
  std::vector<std::uint32_t> addresses(1 << 14);
  for (std::uint32_t& address : addresses) address = static_cast<std::uint32_t>(random());
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(table.country_number(addresses[i++ % addresses.size()]));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(country_of);

void ip_to_number(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(vantrel::ip_to_number("203.117.45.209"));
  }
}
BENCHMARK(ip_to_number);

// All agents of a log by a rating that has seen none of them.
void agent_rating(benchmark::State& state) {
  const Loaded& data = loaded();
  for (auto _ : state) {
    AgentRating rating(data.ratings.agent);
    for (const std::string& agent : data.agents) {
      benchmark::DoNotOptimize(rating.offset_of(agent));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(data.agents.size()));
}
BENCHMARK(agent_rating);

// An agent nobody has seen before.
void agent_rating_first_time(benchmark::State& state) {
  const Loaded& data = loaded();
  for (auto _ : state) {
    AgentRating rating(data.ratings.agent);
    benchmark::DoNotOptimize(rating.offset_of(
        "mozilla/5.0 (windows nt 10.0; win64; x64) applewebkit/537.36 (khtml, like gecko)"));
  }
}
BENCHMARK(agent_rating_first_time);

void load_address_table(benchmark::State& state) {
  std::size_t ranges = 0;
  for (auto _ : state) {
    IpTable table;
    require(table.load("d/ip.psv"), "no address table");
    ranges = table.size();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(ranges));
}
BENCHMARK(load_address_table);

// The scores of all trades; by_formula as the operator's formula gives them.
void score_all(benchmark::State& state, bool by_formula) {
  const Loaded& data = loaded();
  const OutMod modifiers(
      {"100", "100", "100", "3", "2", "1", "0", "0", by_formula ? "10" : "1", kFormula});
  ExpressionEvaluator evaluator;
  for (auto _ : state) {
    for (const TradeWork& work : data.store.works) {
      const ScoreArgs args{work.last60, work.last24, work.last07, 2, TradeCap{}, modifiers};
      benchmark::DoNotOptimize(by_formula ? formula_score(args, evaluator).score
                                          : builtin_score(args).score);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(data.store.works.size()));
}
void score(benchmark::State& state) { score_all(state, false); }
BENCHMARK(score);

void score_by_formula(benchmark::State& state) { score_all(state, true); }
BENCHMARK(score_by_formula);

void evaluator(benchmark::State& state) {
  ExpressionEvaluator expression;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        expression.evaluate_expression("(120*3+4711/2+99)*(100+17)/(2048+1)-12"));
  }
}
BENCHMARK(evaluator);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  std::string site = (std::filesystem::temp_directory_path() / "vantrel-micro-XXXXXX").string();
  if (::mkdtemp(site.data()) == nullptr) return 1;
  int status = 0;
  try {
    ::setenv("TZ", "UTC", 1);
    vantrel::SampleSize size = bench::preset("site");
    size.history_days = 1;
    vantrel::write_sample_site(site, size, bench::kNow);
    std::filesystem::current_path(site);
    load_site();
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    status = 1;
  }
  std::filesystem::current_path("/");
  std::filesystem::remove_all(site);
  return status;
}
