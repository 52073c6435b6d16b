// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a command and makes one of its changes to the files below a folder fail, or kills it there.
// Usage: inject ROOT NUMBER WHAT COMMAND [ARGUMENT...]
// The system calls that change something below ROOT are counted over all processes of the command.
// At the one with this NUMBER, the process group is killed instead (WHAT is "kill") or the call
// fails with an error (WHAT is ENOSPC, EROFS, EACCES or EIO); with 0 nothing is injected. Each
// counted call is reported to file descriptor 3 with its number, name and path, and the one that is
// hit also with WHAT. The last line is "total" and the number of calls.
#include <fcntl.h>
#include <linux/fs.h>
#include <poll.h>
#include <seccomp.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int report_descriptor = 3;
/** The descriptor at which the child leaves the listener; inherited ones are far below it. */
constexpr int listener_descriptor = 200;
constexpr int no_argument = -1;

/** The arguments of a call that name the file it changes. */
struct Place {
  /** The folder that the path starts from, by default the current one; without a path, the file. */
  int descriptor = no_argument;
  int path = no_argument;
};

/** Bits of an argument that must all be set for the call to be a change. */
struct Condition {
  unsigned argument = 0;
  std::uint64_t bits = 0;
};

struct Call {
  const char* name = nullptr;
  Place place;
  Place second_place{};
  std::vector<Condition> any_of{};
};

constexpr Place path_at(int argument) {
  return {no_argument, argument};
}

constexpr Place path_in(int descriptor) {
  return {descriptor, descriptor + 1};
}

constexpr Place file_at(int argument) {
  return {argument, no_argument};
}

std::vector<Condition> if_creating(unsigned argument) {
  return {{argument, O_CREAT}, {argument, O_TRUNC}, {argument, O_TMPFILE}};
}

const std::vector<Call>& calls() {
  static const std::vector<Call> all{
      {"rename", path_at(0), path_at(1)},
      {"renameat", path_in(0), path_in(2)},
      {"renameat2", path_in(0), path_in(2)},
      {"unlink", path_at(0)},
      {"unlinkat", path_in(0)},
      {"rmdir", path_at(0)},
      {"mkdir", path_at(0)},
      {"mkdirat", path_in(0)},
      {"mknod", path_at(0)},
      {"mknodat", path_in(0)},
      {"symlink", path_at(1)},
      {"symlinkat", path_in(1)},
      {"link", path_at(1)},
      {"linkat", path_in(2)},
      {"creat", path_at(0)},
      {"open", path_at(0), {}, if_creating(1)},
      {"openat", path_in(0), {}, if_creating(2)},
      {"openat2", path_in(0)},
      {"truncate", path_at(0)},
      {"ftruncate", file_at(0)},
      {"fallocate", file_at(0)},
      {"write", file_at(0)},
      {"writev", file_at(0)},
      {"pwrite64", file_at(0)},
      {"pwritev", file_at(0)},
      {"pwritev2", file_at(0)},
      {"copy_file_range", file_at(2)},
      {"splice", file_at(2)},
      {"sendfile", file_at(0)},
      {"ioctl", file_at(0), {}, {{1, FICLONE}}},
      {"fsync", file_at(0)},
      {"fdatasync", file_at(0)},
      {"chmod", path_at(0)},
      {"fchmod", file_at(0)},
      {"fchmodat", path_in(0)},
      {"chown", path_at(0)},
      {"lchown", path_at(0)},
      {"fchown", file_at(0)},
      {"fchownat", path_in(0)},
      {"utime", path_at(0)},
      {"utimes", path_at(0)},
      {"futimesat", path_in(0)},
      {"utimensat", path_in(0)},
  };
  return all;
}

[[noreturn]] void fail(const char* what, int error) {
  throw std::system_error{error, std::generic_category(), what};
}

/** Returns the result of a call that returns -1 and sets errno on failure; throws on failure. */
int checked(const char* what, long result) {
  if (result < 0) fail(what, errno);
  return static_cast<int>(result);
}

/** Returns the result of a function that returns a negated error on failure; throws on failure. */
int checked_negated(const char* what, int result) {
  if (result < 0) fail(what, -result);
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(m_number); }
  int number() const { return m_number; }

 private:
  int m_number;
};

/** What to inject, and at which call. */
struct Order {
  fs::path root;
  long number = 0;
  std::string what;
  /** The error that the call returns; 0 for a kill. */
  int error = 0;
};

int error_of(std::string_view what) {
  if (what == "kill") return 0;
  if (what == "ENOSPC") return ENOSPC;
  if (what == "EROFS") return EROFS;
  if (what == "EACCES") return EACCES;
  if (what == "EIO") return EIO;
  throw std::invalid_argument{"WHAT is none of kill, ENOSPC, EROFS, EACCES and EIO"};
}

// --- The child: the filter, and the command under it.

void add_rule(scmp_filter_ctx filter, const Call& call) {
  const int number = seccomp_syscall_resolve_name(call.name);
  // Newer architectures lack the older calls.
  if (number < 0) return;
  if (call.any_of.empty()) {
    checked_negated(call.name, seccomp_rule_add_array(filter, SCMP_ACT_NOTIFY, number, 0, nullptr));
  }
  for (const auto& condition : call.any_of) {
    const scmp_arg_cmp test{condition.argument, SCMP_CMP_MASKED_EQ, condition.bits, condition.bits};
    checked_negated(call.name, seccomp_rule_add_array(filter, SCMP_ACT_NOTIFY, number, 1, &test));
  }
}

/** Puts this process under the filter and returns the listener. */
int load_filter() {
  const std::unique_ptr<void, decltype(&seccomp_release)> filter{seccomp_init(SCMP_ACT_ALLOW),
                                                                 &seccomp_release};
  // sudo would not work without new privileges; only root may load a filter that allows them.
  if (geteuid() == 0) {
    checked_negated("seccomp_attr_set", seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_NNP, 0));
  }
  for (const auto& call : calls()) add_rule(filter.get(), call);
  checked_negated("seccomp_load", seccomp_load(filter.get()));
  return checked_negated("seccomp_notify_fd", seccomp_notify_fd(filter.get()));
}

[[noreturn]] void run_command(char** command) {
  checked("setpgid", setpgid(0, 0));
  // From here on a write would wait for the parent, so a failure prints nothing.
  const int listener = load_filter();
  if (dup3(listener, listener_descriptor, O_CLOEXEC) < 0) _exit(EXIT_FAILURE);
  close(listener);
  // The parent now takes the listener and lets this process continue.
  std::raise(SIGSTOP);
  execvp(command[0], command);
  constexpr int not_found = 127;
  _exit(not_found);
}

// --- The parent: the path that a call changes.

std::string proc_path(std::uint32_t process, const std::string& name) {
  return "/proc/" + std::to_string(process) + '/' + name;
}

std::string text_at(std::uint32_t process, std::uint64_t address) {
  std::string text(PATH_MAX, '\0');
  const Descriptor memory{open(proc_path(process, "mem").c_str(), O_RDONLY | O_CLOEXEC)};
  const auto length = pread(memory.number(), text.data(), text.size(), static_cast<off_t>(address));
  if (length < 0) return {};
  text.resize(std::min(text.find('\0'), text.size()));
  return text;
}

/** Returns whether openat2(2) only reads: its flags are in memory, out of the filter's reach. */
bool opens_for_reading(const Call& call, const seccomp_notif& request) {
  if (std::string_view{call.name} != "openat2") return false;
  std::uint64_t flags = 0;
  const Descriptor memory{open(proc_path(request.pid, "mem").c_str(), O_RDONLY | O_CLOEXEC)};
  const auto address = static_cast<off_t>(request.data.args[2]);
  if (pread(memory.number(), &flags, sizeof flags, address) != sizeof flags) return true;
  return (flags & (O_CREAT | O_TRUNC)) == 0 && (flags & O_TMPFILE) != O_TMPFILE;
}

/** Returns the absolute path of a place, resolved except for its last name; empty if unknown. */
fs::path path_of(const seccomp_notif& request, const Place& place) {
  const auto argument = [&](int number) {
    return request.data.args[static_cast<std::size_t>(number)];
  };
  std::error_code error;
  std::string from = "cwd";
  if (place.descriptor != no_argument) {
    const auto descriptor = static_cast<int>(argument(place.descriptor));
    if (descriptor != AT_FDCWD) from = "fd/" + std::to_string(descriptor);
  }
  fs::path folder = fs::read_symlink(proc_path(request.pid, from), error);
  if (place.path == no_argument) return folder;
  const fs::path name = text_at(request.pid, argument(place.path));
  // An empty path means the descriptor itself.
  if (name.empty()) return folder;
  fs::path full = (folder / name).lexically_normal();
  if (!full.has_filename()) full = full.parent_path();
  return fs::weakly_canonical(full.parent_path(), error) / full.filename();
}

bool is_below(const fs::path& path, const fs::path& root) {
  return path.native().starts_with(root.native() + '/');
}

/** Returns the path below the root that a call changes, or nullopt. */
std::optional<fs::path> changed_path(const Call& call, const seccomp_notif& request,
                                     const fs::path& root) {
  if (opens_for_reading(call, request)) return std::nullopt;
  for (const Place& place : {call.place, call.second_place}) {
    if (place.descriptor == no_argument && place.path == no_argument) continue;
    fs::path path = path_of(request, place);
    if (is_below(path, root)) return path;
  }
  return std::nullopt;
}

const Call& call_with(int number) {
  return *std::ranges::find_if(calls(), [number](const Call& call) {
    return seccomp_syscall_resolve_name(call.name) == number;
  });
}

// --- The parent: the answers.

class Supervisor {
 public:
  Supervisor(Order order, pid_t group, int listener)
      : m_order(std::move(order)), m_group(group), m_listener(listener) {
    checked_negated("seccomp_notify_alloc", seccomp_notify_alloc(&m_request, &m_response));
  }
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;
  ~Supervisor() { seccomp_notify_free(m_request, m_response); }

  /** Answers one call. */
  void answer() {
    // The kernel accepts only an empty request.
    *m_request = {};
    // A process that was killed in the meantime has no request any more.
    if (seccomp_notify_receive(m_listener, m_request) != 0) return;
    *m_response = {};
    m_response->id = m_request->id;
    m_response->flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
    const Call& call = call_with(m_request->data.nr);
    const auto path = changed_path(call, *m_request, m_order.root);
    if (seccomp_notify_id_valid(m_listener, m_request->id) != 0) return;
    if (path && count(call, *path)) return;
    seccomp_notify_respond(m_listener, m_response);
  }

  long total() const { return m_total; }

 private:
  /** Counts a call, and makes it fail when it is its turn. Returns true when it gets no answer. */
  bool count(const Call& call, const fs::path& path) {
    const bool hit = ++m_total == m_order.number;
    dprintf(report_descriptor, "%ld %s %s%s%s\n", m_total, call.name, path.c_str(), hit ? " " : "",
            hit ? m_order.what.c_str() : "");
    if (!hit) return false;
    if (m_order.error == 0) {
      kill(-m_group, SIGKILL);
      return true;
    }
    m_response->flags = 0;
    m_response->error = -m_order.error;
    return false;
  }

  Order m_order;
  pid_t m_group;
  int m_listener;
  long m_total = 0;
  seccomp_notif* m_request = nullptr;
  seccomp_notif_resp* m_response = nullptr;
};

int exit_status(int status) {
  constexpr int by_signal = 128;
  return WIFSIGNALED(status) ? by_signal + WTERMSIG(status) : WEXITSTATUS(status);
}

/** Answers calls until no process is left under the filter. Returns the command's exit status. */
int supervise(const Order& order, pid_t child) {
  int status = 0;
  checked("waitpid", waitpid(child, &status, WUNTRACED));
  if (!WIFSTOPPED(status)) return exit_status(status);
  const Descriptor process{checked("pidfd_open", syscall(SYS_pidfd_open, child, 0))};
  const Descriptor listener{
      checked("pidfd_getfd", syscall(SYS_pidfd_getfd, process.number(), listener_descriptor, 0))};
  kill(child, SIGCONT);

  Supervisor supervisor{order, child, listener.number()};
  std::array<pollfd, 2> events{{{listener.number(), POLLIN, 0}, {process.number(), POLLIN, 0}}};
  auto& [calls_wait, child_ended] = events;
  while ((calls_wait.revents & POLLHUP) == 0) {
    checked("poll", poll(events.data(), events.size(), -1));
    if ((calls_wait.revents & POLLIN) != 0) supervisor.answer();
    if ((child_ended.revents & POLLIN) == 0) continue;
    checked("waitpid", waitpid(child, &status, 0));
    child_ended = {-1, 0, 0};
  }
  if (child_ended.fd >= 0) checked("waitpid", waitpid(child, &status, 0));
  dprintf(report_descriptor, "total %ld\n", supervisor.total());
  return exit_status(status);
}

int inject(const std::vector<char*>& arguments) {
  constexpr std::size_t command_at = 4;
  if (arguments.size() <= command_at) {
    throw std::invalid_argument{"usage: inject ROOT NUMBER WHAT COMMAND [ARGUMENT...]"};
  }
  const Order order{fs::canonical(arguments[1]), std::stol(arguments[2]), arguments[3],
                    error_of(arguments[3])};
  auto command = std::vector<char*>(arguments.begin() + command_at, arguments.end());
  command.push_back(nullptr);
  // The command must not see the report.
  checked("file descriptor 3", fcntl(report_descriptor, F_SETFD, FD_CLOEXEC));
  const pid_t child = checked("fork", fork());
  if (child == 0) run_command(command.data());
  return supervise(order, child);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return inject({argv, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "inject: %s\n", error.what());
    constexpr int own_failure = 125;
    return own_failure;
  }
}
