// mdlab export: a run's decisions as files of other programs.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddExport;

}  // namespace lab
