// SPDX-License-Identifier: GPL-3.0-or-later
// Where one text stands in another, counted in characters of UTF-8 and not in bytes.
#pragma once

#include <glib.h>

/**
 * Where `needle` first stands in `rawstr`, counted in characters; -1 when it stands nowhere. An
 * empty `needle` stands at 0. A missing text logs a critical warning, and the result is 0. This
 * exists for other callers: the program itself cuts its texts by bytes.
 */
int vh_string_index_of(const char* rawstr, const char* needle);
