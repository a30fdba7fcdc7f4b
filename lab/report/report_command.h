// The subcommand `mdlab report`.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddReport;

}  // namespace lab
