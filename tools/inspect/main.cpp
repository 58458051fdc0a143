// vantrel-inspect: shows a site to its webmaster and finds what keeps the maintenance run from its
// work. Reads only; no byte and no timestamp of the site changes.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "base/version.h"
#include "preview.h"
#include "report.h"
#include "site.h"
#include "views.h"

namespace {

using namespace vantrel::inspect;

enum ExitStatus { kFine = 0, kUnavailable = 1, kWrongUsage = 3 };

struct Options {
  std::string site = ".";
  bool json = false;
  TradesQuery trades;
  std::string trade;
  EventsQuery events;
  std::string csv;
  std::string page_file;
  bool all = false;
  ForesightQuery foresight;
  std::vector<std::string> with;
  PreviewQuery preview;
  std::vector<std::string> sites;
  bool by_trade = false;
  int minutes = 3;
  CheckQuery check;
};

// "FILE=OTHER", the other one as it is named where the program was started.
std::vector<std::pair<std::string, std::string>> replacements(
    const std::vector<std::string>& with) {
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const std::string& text : with) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw WrongUsage{"--with takes FILE=OTHER"};
    pairs.emplace_back(text.substr(0, equals), std::filesystem::absolute(text.substr(equals + 1)));
  }
  return pairs;
}

// What names files of the place where the program was started, before it goes to the site.
void take_paths(Options& options) {
  options.foresight.with = replacements(options.with);
  options.preview.foresight = options.foresight;
  for (std::string* file : {&options.preview.list_file, &options.page_file}) {
    if (!file->empty()) *file = std::filesystem::absolute(*file);
  }
}

void add_foresight(CLI::App& command, Options& options) {
  command.add_option("--with", options.with, "Another file in the place of a settings file")
      ->type_name("FILE=OTHER")
      ->allow_extra_args(false);
  command.add_option("--hour", options.foresight.hour, "Quotas of this hour of the day")
      ->check(CLI::Range(0, 23))
      ->type_name("H");
  command.add_flag("--hits", options.foresight.hits,
                   "Credit the logs a run started now would read");
}

Json why(const Options& options) {
  if (options.trade.empty() != options.all) throw WrongUsage{"why takes a trade, or --all"};
  return why_view(options.all ? std::nullopt : std::optional(options.trade), options.foresight);
}

void add_commands(CLI::App& app, Options& options) {
  app.require_subcommand(1);
  app.fallthrough();
  app.set_help_flag("-h,--help", "Show this help, or that of a command");
  app.set_version_flag("--version", std::string("vantrel-inspect ") + vantrel::kVersion,
                       "Show the version");
  app.add_option("--site", options.site, "Directory of the site, instead of the current one")
      ->type_name("DIR");
  app.add_flag("--json", options.json, "Print the view as JSON");
  CLI::App* site = app.add_subcommand("site", "The site as a whole: windows, hours, days");
  site->add_option("--csv", options.csv, "Print only this, as comma-separated values")
      ->type_name("days|hours")
      ->check(CLI::IsMember({"days", "hours"}).description(""));
  app.add_subcommand("sites", "Many sites, a line each, worst first")
      ->add_option("directories", options.sites, "Their directories")
      ->required()
      ->type_name("DIR");
  CLI::App* metrics = app.add_subcommand("metrics", "Figures for Prometheus, as a text file");
  metrics->add_option("directories", options.sites, "Directories of sites")->type_name("DIR");
  metrics->add_flag("--trades", options.by_trade, "Also the windows of every trade");
  app.add_subcommand("alive", "Was a list written just now? For monitoring")
      ->add_option("--minutes", options.minutes, "Within so many minutes (3)")
      ->type_name("N")
      ->check(CLI::Range(1, 1000000).description(""));
  app.add_subcommand("list", "The outgoing list as visitors will see it");
  CLI::App* why = app.add_subcommand("why", "Why a trade stands where it does, step by step");
  why->add_option("trade", options.trade, "Its name or id")->type_name("NAME|ID");
  why->add_flag("--all", options.all, "All of them, a sentence each");
  add_foresight(*why, options);
  CLI::App* preview = app.add_subcommand("preview", "The next list beside the present one");
  add_foresight(*preview, options);
  preview->add_flag("--changed", options.preview.changed, "The largest changes first");
  preview->add_option("--list-file", options.preview.list_file, "Write the list's bytes there")
      ->type_name("FILE");
  CLI::App* trades = app.add_subcommand("trades", "All trades and their traffic");
  trades->add_option("--sort", options.trades.sort, "Sort by a column, by its title")
      ->type_name("COLUMN");
  trades->add_flag("--reverse", options.trades.reverse, "The other way round");
  trades->add_option("--top", options.trades.top, "Only the first N, by in24 if not sorted")
      ->type_name("N");
  trades->add_option("--columns", options.trades.columns, "These columns, such as in24,out24,left")
      ->delimiter(',')
      ->type_name("LIST");
  trades->add_flag("--wide", options.trades.wide, "All columns and all entries");
  CLI::App* trade = app.add_subcommand("trade", "Everything about one trade");
  trade->add_option("trade", options.trade, "Its name or id")->required()->type_name("NAME|ID");
  CLI::App* events = app.add_subcommand("events", "The last events of the log, explained");
  events->add_option("count", options.events.count, "How many (20)")->type_name("N");
  events
      ->add_option("--since", options.events.since, "From then on: 2026-11-23, 12:50, 90m, 12h, 2d")
      ->type_name("TIME");
  events->add_option("--level", options.events.level, "1: only what ended a run; 0: the rest")
      ->check(CLI::IsMember({"0", "1"}))
      ->type_name("LEVEL");
  events->add_option("--trade", options.events.trade, "Only of this trade")->type_name("NAME|ID");
  app.add_subcommand("runs", "The run history and its gaps");
  CLI::App* check = app.add_subcommand("check", "What is wrong, what a run now would do about it");
  check->add_option("--user", options.check.user, "Look with the rights of this user (root only)")
      ->type_name("NAME");
  check->add_flag("--verbose", options.check.verbose, "Tell also what is fine");
  CLI::App* report = app.add_subcommand(
      "report", has_report() ? "All of it as a page for a browser" : "Not built into this program");
  report->add_option("-o,--output", options.page_file, "Write this file, not the standard output")
      ->type_name("FILE");
  app.footer(
      "Exit status: 0 fine; 1 check: something is off, other views: not available;\n"
      "2 check: the run would end early; 3 wrong usage.");
}

struct View {
  Json (*collect)(const Options& options);
  void (*print)(const Json& view);
};

View view_of(const std::string& command) {
  if (command == "list") return {[](const Options&) { return list_view(); }, print_list};
  if (command == "why") {
    return {why, print_why};
  }
  if (command == "preview") {
    return {[](const Options& o) { return preview_view(o.preview); }, print_preview};
  }
  if (command == "trades") {
    return {[](const Options& o) { return trades_view(o.trades); }, print_trades};
  }
  if (command == "site") return {[](const Options&) { return site_view(); }, print_site};
  if (command == "sites") {
    return {[](const Options& o) { return sites_view(o.sites); }, print_sites};
  }
  if (command == "metrics") {
    return {[](const Options& o) { return metrics_view(o.sites, o.by_trade); }, print_metrics};
  }
  if (command == "alive") {
    return {[](const Options& o) { return alive_view(o.minutes); }, print_alive};
  }
  if (command == "trade")
    return {[](const Options& o) { return trade_view(o.trade); }, print_trade};
  if (command == "events") {
    return {[](const Options& o) { return events_view(o.events); }, print_events};
  }
  if (command == "runs") return {[](const Options&) { return runs_view(); }, print_runs};
  return {[](const Options& o) { return check_view(o.check); }, print_check};
}

int show(const std::string& command, const Options& options) {
  if (command == "report") {
    const std::string data = report_data();
    write_report(options.json ? R"({"view":"report","data":)" + data + "}\n" : report_page(data),
                 options.page_file);
    return kFine;
  }
  const View view = view_of(command);
  const Json data = view.collect(options);
  if (options.json) {
    // Escaped to ASCII, so that no byte of a damaged file reaches the terminal.
    std::cout << Json({{"view", command}, {"data", data}})
                     .dump(2, ' ', true, Json::error_handler_t::replace)
              << '\n';
  } else if (!options.csv.empty()) {
    print_site_csv(data, options.csv);
  } else {
    view.print(data);
  }
  return data.value("status", static_cast<int>(kFine));
}

// Takes the arguments and shows the view they name.
int started(int argc, char** argv) {
  CLI::App app("Looks at a site of the maintenance run without changing it.", "vantrel-inspect");
  Options options;
  add_commands(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kFine : kWrongUsage;
  }
  take_paths(options);
  if (::chdir(options.site.c_str()) != 0) {
    throw WrongUsage{"there is no directory " + printable(options.site)};
  }
  return show(app.get_subcommands().front()->get_name(), options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return started(argc, argv);
  } catch (const WrongUsage& error) {
    std::cerr << "vantrel-inspect: " << error.reason << '\n';
    return kWrongUsage;
  } catch (const Unavailable& error) {
    std::cerr << "vantrel-inspect: " << error.reason << '\n';
  } catch (const std::exception& error) {
    std::cerr << "vantrel-inspect: " << error.what() << '\n';
  }
  return kUnavailable;
}
