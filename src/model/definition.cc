// SPDX-License-Identifier: GPL-3.0-or-later
// A file definition or a boot script as a plain value.
#include "model/definition.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/text.h"

namespace varnholt::model {
namespace {

/** The words that a line uses for the operations; the first one that applies counts. */
constexpr std::pair<VhFileOperationType, std::string_view> words[] = {
    {VH_FILE_OPERATION_TYPE_FOT_Update, "update"},
    {VH_FILE_OPERATION_TYPE_FOT_OverWrite, "overwrite"},
    {VH_FILE_OPERATION_TYPE_FOT_Symbolic, "symbolic"}};

int operation_of_field(std::string_view field) {
  const auto* const known = std::ranges::find_if(
      words, [field](const auto& word) { return field.starts_with(word.second); });
  const int op = known == std::end(words) ? VH_FILE_OPERATION_TYPE_FOT_NULL : known->first;
  return field.ends_with("deleted") ? op | VH_FILE_OPERATION_TYPE_FOT_Deleted : op;
}

}  // namespace

std::optional<BakDefFields> read_lnk_line(std::string_view line) {
  const auto fields = fields_of(line, "lnk");
  if (fields.size() != 5 && fields.size() != 7) return std::nullopt;
  BakDefFields read;
  read.from = fields[2];
  read.to = fields[3];
  read.op = operation_of_field(fields[4]);
  const bool takes_time =
      read.has(VH_FILE_OPERATION_TYPE_FOT_Update) || read.has(VH_FILE_OPERATION_TYPE_FOT_OverWrite);
  if (fields.size() == 7 && takes_time) {
    read.force_overwrite = fields[5] == "true";
    read.last_oper_time = g_ascii_strtoll(std::string{fields[6]}.c_str(), nullptr, 0);
  }
  return read;
}

std::string_view operation_word(const BakDefFields& definition) {
  const auto* const known = std::ranges::find_if(
      words, [&definition](const auto& word) { return definition.has(word.first); });
  return known == std::end(words) ? "update" : known->second;
}

std::string operation_field(const BakDefFields& definition) {
  std::string field{operation_word(definition)};
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) field += "|deleted";
  return field;
}

std::string lnk_line(const BakDefFields& definition) {
  const bool update = definition.has(VH_FILE_OPERATION_TYPE_FOT_Update);
  std::string line = definition.is_dir ? "lnk,dir," : "lnk,file,";
  line += definition.from + ',' + definition.to + ',' + operation_field(definition);
  if (update || definition.has(VH_FILE_OPERATION_TYPE_FOT_OverWrite)) {
    line += update || definition.force_overwrite ? ",true," : ",false,";
    line += std::to_string(definition.last_oper_time);
  }
  return line;
}

std::optional<BakDefFields> read_shl_line(std::string_view line) {
  const auto fields = fields_of(line, "shl");
  if (fields.size() != 4) return std::nullopt;
  BakDefFields read;
  read.from = fields[1];
  read.to = fields[2];
  read.op = fields[3] == "update" ? VH_FILE_OPERATION_TYPE_FOT_Update
                                  : VH_FILE_OPERATION_TYPE_FOT_OverWrite;
  return read;
}

std::string shl_line(const BakDefFields& script) {
  const bool update = script.op == VH_FILE_OPERATION_TYPE_FOT_Update;
  return "shl," + script.from + ',' + script.to + (update ? ",update" : ",overwrite");
}

bool is_own_source(const BakDefFields& definition) {
  return definition.from == definition.to;
}

bool comes_first(const BakDefFields& definition) {
  return !definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic);
}

bool is_stamped(const BakDefFields& definition) {
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Update)) return true;
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_OverWrite) && definition.force_overwrite;
}

}  // namespace varnholt::model
