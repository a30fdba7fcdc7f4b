// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab score: one run against the labels of its clip.
#pragma once

namespace CLI {
class App;
}

namespace lab {

void AddScore(CLI::App* app, int* status);

}  // namespace lab
