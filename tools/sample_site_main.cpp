// vantrel-sample-site: lays out a sample site, ready for a run.
#include <exception>
#include <iostream>

#include "sample_options.h"

int main(int argc, char** argv) {
  if (vantrel::answer_about("vantrel-sample-site", argc, argv)) return 0;
  const auto options = vantrel::parse_sample_options(argc, argv);
  if (!options) {
    std::cerr << vantrel::sample_usage("vantrel-sample-site");
    return 2;
  }
  try {
    vantrel::write_sample_site(options->directory, options->size, options->at);
    vantrel::write_sample_backup(options->directory, options->at);
  } catch (const std::exception& failure) {
    std::cerr << "vantrel-sample-site: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
