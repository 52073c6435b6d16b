// SPDX-License-Identifier: GPL-3.0-or-later
// Finds one text in another and counts in characters of UTF-8, not in bytes.
#pragma once

#include <glib.h>

/**
 * Returns where `needle` first occurs in `rawstr`, counted in characters, or -1 when it does not
 * occur. An empty `needle` occurs at 0. Returns 0 with a critical warning when an argument is null.
 * This exists for other callers: the program itself cuts its texts by bytes.
 */
int vh_string_index_of(const char* rawstr, const char* needle);
