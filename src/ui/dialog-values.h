// SPDX-License-Identifier: GPL-3.0-or-later
// The values in the dialogs for definitions and routes as plain values: the same that the functions
// vh_def_dlg_get_ndata() and vh_rut_dlg_get_ndata() store as texts.
#pragma once

#include "ui/def-dlg.h"
#include "ui/rut-dlg.h"

namespace varnholt::ui {

/** Returns a definition that was never applied. */
model::BakDefFields values_of(VhDefDlg* self);

model::RutDefFields values_of(VhRutDlg* self);

}  // namespace varnholt::ui
