// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the link builder's rewrite of a profile with a plain one: marked lines are removed, all
// others stay byte for byte, and each definition is passed on once.
#include "base/glib-ptr.h"
#include "store/definitions.h"
#include "target.h"

namespace {

bool matches(const char* pattern, const std::string& line) {
  const std::unique_ptr<GRegex, varnholt::FreeWith<g_regex_unref>> regex{
      g_regex_new(pattern, static_cast<GRegexCompileFlags>(G_REGEX_RAW | G_REGEX_DOLLAR_ENDONLY),
                  GRegexMatchFlags{}, nullptr)};
  return g_regex_match_full(regex.get(), line.data(), static_cast<gssize>(line.size()), 0,
                            GRegexMatchFlags{}, nullptr, nullptr) != 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string profile{reinterpret_cast<const char*>(data), size};
  std::string expected;
  std::size_t definitions = 0;
  for (std::size_t at = 0; at < size + (profile.ends_with('\n') ? 1 : 0);) {
    const auto line = profile.substr(at, profile.find('\n', at) - at);
    at += line.size() + 1;
    if (matches(R"(^lnk[^,\0]*(,[^,\0]*){4}((,[^,\0]*){2})?$)", line)) {
      ++definitions;
      if (matches(R"(^([^,]*,){4}[^,]*deleted[ \t\f\r]*(,|$))", line)) continue;
    }
    expected += (expected.empty() ? "" : "\n") + line;
  }
  std::size_t handed_on = 0;
  const auto done = varnholt::store::for_each_definition(
      profile, [&handed_on](std::size_t /*line*/, const auto& /*definition*/) { ++handed_on; });
  must_hold(varnholt::store::without_lines(profile, done) == expected, "the kept lines");
  must_hold(handed_on == definitions, "each definition once");
  return 0;
}
