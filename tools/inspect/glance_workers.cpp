// Many sites at once: each worker process looks at some of them, one after the other.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <thread>

#include "base/text.h"
#include "glance.h"

namespace vantrel::inspect {
namespace {

// A process that looks at every step-th directory from one on and writes a line each.
struct Worker {
  pid_t process = -1;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> lines{nullptr, std::fclose};
};

void write_lines(const std::vector<std::string>& directories, std::size_t first, std::size_t step,
                 Detail detail, std::FILE* lines) {
  const int start = ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (std::size_t i = first; i < directories.size(); i += step) {
    if (::fchdir(start) != 0) return;
    const std::string line =
        look_at_site(directories[i], detail).dump(-1, ' ', true, Json::error_handler_t::replace);
    std::fprintf(lines, "%s\n", line.c_str());
    std::fflush(lines);
  }
}

Worker start_worker(const std::vector<std::string>& directories, std::size_t first,
                    std::size_t step, Detail detail) {
  Worker worker;
  worker.lines.reset(std::tmpfile());
  if (worker.lines) worker.process = ::fork();
  if (worker.process != 0) return worker;
  try {
    write_lines(directories, first, step, detail, worker.lines.get());
  } catch (const std::exception&) {
    // The site at hand has no line.
  }
  std::_Exit(0);
}

std::vector<std::string> lines_of(Worker& worker) {
  if (worker.process > 0) ::waitpid(worker.process, nullptr, 0);
  std::string text;
  char bytes[1 << 16];
  if (worker.lines) std::rewind(worker.lines.get());
  while (worker.lines) {
    const std::size_t count = std::fread(bytes, 1, sizeof bytes, worker.lines.get());
    if (count == 0) break;
    text.append(bytes, count);
  }
  return split(text, '\n');
}

}  // namespace

std::vector<Json> look_at_sites(const std::vector<std::string>& directories, Detail detail) {
  const std::size_t total = directories.size();
  const std::size_t step = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, total);
  std::vector<Worker> workers;
  for (std::size_t w = 0; w < step; ++w) {
    workers.push_back(start_worker(directories, w, step, detail));
  }
  std::vector<Json> sites(total);
  for (std::size_t w = 0; w < step; ++w) {
    for (std::size_t next = w; next < total; next += step) {
      for (const std::string& line : lines_of(workers[w])) {
        Json site = Json::parse(line, nullptr, false);
        if (site.is_discarded()) break;  // it ended inside the line, for want of room
        sites[next] = std::move(site);
        next += step;
      }
      if (next >= total) break;
      // The worker did not survive this one; another goes on behind it.
      sites[next] = nothing_known(directories[next], "the examination broke off");
      workers[w] = start_worker(directories, next + step, step, detail);
    }
  }
  return sites;
}

}  // namespace vantrel::inspect
