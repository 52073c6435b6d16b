// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the toolkit's options out of the arguments, without the toolkit.
#include "start/arguments.h"

#include <array>
#include <memory>

#include <glib.h>

#include "base/glib-ptr.h"

namespace varnholt::start {
namespace {

gboolean pass_over(const char* /*option*/, const char* /*value*/, gpointer /*data*/,
                   GError** /*error*/) {
  return TRUE;
}

GOptionEntry option(const char* name, bool has_value) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the entry takes any function
  auto* const callback = reinterpret_cast<gpointer>(pass_over);
  const int flags = has_value ? 0 : G_OPTION_FLAG_NO_ARG;
  return {name, 0, flags, G_OPTION_ARG_CALLBACK, callback, nullptr, nullptr};
}

}  // namespace

std::vector<char*> without_toolkit_options(const std::vector<char*>& arguments) {
  int screen = 0;
  const std::array options{
      option("gtk-module", true),
      option("g-fatal-warnings", false),
      option("class", true),
      option("name", true),
      option("display", true),
      option("sync", false),
      GOptionEntry{"screen", 0, 0, G_OPTION_ARG_INT, &screen, nullptr, nullptr},
      GOptionEntry{}};
  GOptionGroup* const toolkit = g_option_group_new("gtk", "", "", nullptr, nullptr);
  g_option_group_add_entries(toolkit, options.data());
  const std::unique_ptr<GOptionContext, FreeWith<g_option_context_free>> context{
      g_option_context_new(nullptr)};
  g_option_context_set_main_group(context.get(), toolkit);
  g_option_context_set_ignore_unknown_options(context.get(), TRUE);
  g_option_context_set_help_enabled(context.get(), FALSE);

  auto rest = arguments;
  auto count = static_cast<int>(rest.size());
  rest.push_back(nullptr);
  char** first = rest.data();
  g_option_context_parse(context.get(), &count, &first, nullptr);
  rest.resize(static_cast<std::size_t>(count));
  return rest;
}

}  // namespace varnholt::start
