// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab sweep: many settings over many clips, scored.
#pragma once

namespace CLI {
class App;
}

namespace lab {

void AddSweep(CLI::App* app, int* status);

}  // namespace lab
