// SPDX-License-Identifier: GPL-3.0-or-later
// The whole model: definitions and routes, their lists, and the small functions that they share.
#pragma once

// IWYU pragma: begin_exports
#include "model/bak-def-item.h"
#include "model/bak-def-list.h"
#include "model/character-index.h"
#include "model/file-operation.h"
#include "model/file-test.h"
#include "model/new-item.h"
#include "model/rut-def-item.h"
#include "model/rut-def-list.h"
#include "model/table-row.h"
// IWYU pragma: end_exports
