// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The JSON dumps. A reader of our own and not a library, because it must name the line and column
// of a wrong value, knows what is due there, and holds no tree of a whole file. White space is
// free; keys come in the order in which MD writes them.
#pragma once

#include "lab/dumps/frame.h"
#include "lab/dumps/scanner.h"

namespace lab {

void ReadFullJson(Scanner& scanner, Frame* frame);
void ReadDistanceJson(Scanner& scanner, Frame* frame);
void ReadObjectReport(Scanner& scanner, Frame* frame);

}  // namespace lab
