// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Comparing files as bytes, at the pace of the disk.
#pragma once

#include <cstdint>
#include <memory>

#include "lab/tool/raw_file.h"

namespace lab {

class ByteCompare {
  public:
    ByteCompare();

    // How many bytes from these offsets on are equal; -1 if all are, up to both ends.
    int64_t EqualBytes(const RawFile& a, int64_t a_offset, const RawFile& b, int64_t b_offset);

    // Sizes first, then bytes.
    bool Equal(const RawFile& a, const RawFile& b);

  private:
    std::unique_ptr<char[]> a_, b_;
};

}  // namespace lab
