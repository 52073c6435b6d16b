// SPDX-License-Identifier: GPL-3.0-or-later
// The command varnholt-check: its options, and what it prints.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sysexits.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <glib.h>
#include <glib/gi18n.h>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/glib-ptr.h"
#include "base/paths.h"
#include "check/report.h"
#include "check/survey.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

constexpr int cannot_read = 3;
constexpr auto* text_domain = "varnholt";

/** What the arguments ask for. */
struct Wish {
  gboolean all = FALSE;
  gboolean quiet = FALSE;
  gboolean json = FALSE;
  gboolean no_count = FALSE;
  gboolean version = FALSE;
  std::string profile = paths::profile;
};

void use_locale() {
  std::setlocale(LC_ALL, "");
  bindtextdomain(text_domain,
                 (std::filesystem::path{program_folder()} / paths::catalogues).c_str());
  bind_textdomain_codeset(text_domain, "UTF-8");
  textdomain(text_domain);
}

/** Raises two limits: each level of a deep folder takes a descriptor and memory while it counts. */
void allow_deep_folders() {
  for (const auto resource : {RLIMIT_NOFILE, RLIMIT_STACK}) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0) continue;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(resource, &limit);
  }
}

/** Reads the arguments. Returns false, after saying why, when they make no sense. */
bool read_arguments(int argc, char** argv, Wish& wish) {
  const GOptionEntry entries[] = {
      {"all", 'a', 0, G_OPTION_ARG_NONE, &wish.all, N_("Tell of links that are as they should be"),
       nullptr},
      {"quiet", 'q', 0, G_OPTION_ARG_NONE, &wish.quiet, N_("Print the summary only"), nullptr},
      {"json", 'j', 0, G_OPTION_ARG_NONE, &wish.json, N_("Print everything as a JSON document"),
       nullptr},
      {"no-count", 'n', 0, G_OPTION_ARG_NONE, &wish.no_count,
       N_("Do not count what is moved, deleted or copied"), nullptr},
      {"version", 'V', 0, G_OPTION_ARG_NONE, &wish.version, N_("Print the version"), nullptr},
      {nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
  const std::unique_ptr<GOptionContext, FreeWith<g_option_context_free>> context{
      g_option_context_new(_("[PROFILE]"))};
  g_option_context_set_summary(
      context.get(),
      _("Tells what the next run of the link builder will do with a profile on this\n"
        "machine, and what is wrong with it. Changes nothing."));
  g_option_context_set_description(
      context.get(),
      _("The profile is /etc/.varnholt.ini unless another one is named; - is that on\n"
        "standard input.\n"
        "Exit status: 0 nothing would change and nothing is wrong, 1 something would\n"
        "change, 2 something would fail, be lost or depends on something else, 3 the\n"
        "profile cannot be read, 64 wrong use."));
  g_option_context_add_main_entries(context.get(), entries, text_domain);
  ErrorPtr error;
  if (g_option_context_parse(context.get(), &argc, &argv, out(error)) == 0) {
    print_failure("varnholt-check: %s\n", printable(error->message).c_str());
  } else if (argc > 2) {
    print_failure("varnholt-check: %s\n", _("Only one profile can be checked."));
  } else {
    if (argc == 2) wish.profile = argv[1];
    return true;
  }
  print_failure("%s\n", _("\"varnholt-check --help\" tells how it is used."));
  return false;
}

/** Returns the width that the environment asks for, or that of the terminal, or the usual one. */
std::size_t output_width() {
  constexpr std::uint64_t widest = 10'000;
  const char* const wanted = std::getenv("COLUMNS");
  guint64 columns = 0;
  if (wanted != nullptr && g_ascii_string_to_unsigned(wanted, 10, 1, widest, &columns, nullptr)) {
    return columns;
  }
  struct winsize size {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return ReportStyle{}.width;
}

bool wants_colour() {
  const char* const no_colour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool dumb = terminal == nullptr || std::string_view{terminal} == "dumb";
  return isatty(STDOUT_FILENO) != 0 && !dumb && (no_colour == nullptr || *no_colour == '\0');
}

FileText read_standard_input() {
  FileText file;
  if (fcntl(STDIN_FILENO, F_GETFD) < 0) {
    g_set_error_literal(out(file.error), G_FILE_ERROR, G_FILE_ERROR_BADF, g_strerror(errno));
    return file;
  }
  const std::unique_ptr<GIOChannel, FreeWith<g_io_channel_unref>> input{
      g_io_channel_unix_new(STDIN_FILENO)};
  g_io_channel_set_encoding(input.get(), nullptr, nullptr);
  g_io_channel_read_to_end(input.get(), out(file.bytes), &file.length, out(file.error));
  return file;
}

std::string output_for(const Wish& wish, const Survey& survey) {
  if (wish.json) return document_on(survey, wish.profile);
  return report_on(survey, {.all = wish.all != 0,
                            .summary_only = wish.quiet != 0,
                            .colour = wants_colour(),
                            .width = output_width()});
}

int run(int argc, char** argv) {
  use_locale();
  Wish wish;
  if (!read_arguments(argc, argv, wish)) return EX_USAGE;
  if (wish.version) {
    std::puts("varnholt-check " VARNHOLT_VERSION);
    return EXIT_SUCCESS;
  }
  const auto profile =
      wish.profile == "-" ? read_standard_input() : read_file(wish.profile.c_str());
  if (profile.error) {
    print_failure("varnholt-check: %s\n", printable(profile.error->message).c_str());
    return cannot_read;
  }
  allow_deep_folders();
  const auto survey = survey_of(wish.profile, profile.text(), wish.no_count == 0);
  if (std::fputs(output_for(wish, survey).c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    print_failure("varnholt-check: %s\n", g_strerror(errno));
    return EX_IOERR;
  }
  return status_of(survey);
}

}  // namespace
}  // namespace varnholt::check

int main(int argc, char** argv) {
  return varnholt::check::run(argc, argv);
}
