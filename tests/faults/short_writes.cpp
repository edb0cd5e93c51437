// A preloaded library that makes one write call accept only half of its bytes. Counts only writes to files
// below SHORT_FOLDER. SHORT_AT selects the call, from 1; 0 selects none. With SHORT_THEN_KILL set, the
// process is killed right after it. Each counted call is reported on standard error.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <sys/sendfile.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

long writes = 0;

bool countsFor(int file) {
  const char* folder = ::getenv("SHORT_FOLDER");
  char path[4096];
  const ssize_t length = ::readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
  return folder && length > 0 && std::string(path, std::size_t(length)).rfind(folder, 0) == 0;
}

/// Number of bytes that the write may accept.
size_t allowed(int file, size_t count) {
  if (count < 2 || !countsFor(file))
    return count;
  const size_t taken = ++writes == std::atol(::getenv("SHORT_AT")) ? count / 2 : count;
  std::fprintf(stderr, "write of %zu bytes takes %zu\n", count, taken);
  return taken;
}

void killAfterShort(size_t asked, size_t count) {
  if (asked != count && ::getenv("SHORT_THEN_KILL"))
    ::raise(SIGKILL);
}

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" ssize_t write(int file, const void* bytes, size_t count) {
  static const auto system = next<ssize_t(int, const void*, size_t)>("write");
  const size_t asked = allowed(file, count);
  const ssize_t written = system(file, bytes, asked);
  killAfterShort(asked, count);
  return written;
}

extern "C" ssize_t sendfile(int to, int from, off_t* offset, size_t count) {
  static const auto system = next<ssize_t(int, int, off_t*, size_t)>("sendfile");
  const size_t asked = allowed(to, count);
  const ssize_t written = system(to, from, offset, asked);
  killAfterShort(asked, count);
  return written;
}
