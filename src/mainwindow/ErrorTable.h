// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

// Fills the session's ErrorText table, by runtime error number, as the main window does at
// start-up. The sliding integrations show an entry of it when their error trap fires.
void FillErrorText();

} // namespace dip
