// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A playlist of YUView: a raw video with a statistics file drawn over it.
#pragma once

#include <filesystem>
#include <string>

#include "lab/dumps/run.h"
#include "lab/export/statistics_file.h"

namespace lab {

// Both files are named twice, absolutely and as seen from `folder`, where the playlist will be: so
// a folder with all three can move.
std::string PlaylistText(const std::filesystem::path& folder, const std::filesystem::path& video,
                         VideoSize size, const std::filesystem::path& statistics,
                         const StatisticsHeader& header);

}  // namespace lab
