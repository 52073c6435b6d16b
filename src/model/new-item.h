// SPDX-License-Identifier: GPL-3.0-or-later
// Makes items of plain values. The caller owns a new item; no values give null.
#pragma once

#include <optional>

#include "model/bak-def-item.h"
#include "model/rut-def-item.h"

namespace varnholt::model {

/** Creates an item and looks up whether its source is a folder. */
VhBakDefItem* new_bak_def_item(std::optional<BakDefFields> fields);

VhRutDefItem* new_rut_def_item(std::optional<RutDefFields> fields);

}  // namespace varnholt::model
