// mdlab show: one frame of a run as a map of characters, or one block's record over some frames.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddShow;

}  // namespace lab
