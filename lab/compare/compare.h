// mdlab compare GOLDEN OTHER: the first difference between two runs, and how many more there are.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddCompare;

}  // namespace lab
