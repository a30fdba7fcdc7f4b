// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Raw planar videos: the first frame, plane and pixel that differ.
#pragma once

#include <optional>
#include <string>

#include "lab/compare/comparison.h"

namespace lab {

// The layout follows the marks in the name: _P400 is luma only, _P422 has chroma of full height,
// everything else is 4:2:0. Nothing comes back when the files are equal. Throws Error when they
// cannot be read, or differ and without `size` the names give no size or two.
std::optional<VideoDifference> CompareVideos(const std::string& golden, const std::string& other,
                                             std::optional<VideoSize> size);

}  // namespace lab
