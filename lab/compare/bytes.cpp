// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/bytes.h"

#include <algorithm>
#include <cstring>

namespace lab {

namespace {

// Both pieces stay in the processor's second cache.
constexpr int64_t kPiece = 128 * 1024;
// Of frames that differ one after the other, little is read twice.
constexpr int64_t kFirstPiece = 16 * 1024;

}  // namespace

ByteCompare::ByteCompare() : a_(new char[kPiece]), b_(new char[kPiece]) {}

int64_t ByteCompare::EqualBytes(const RawFile& a, int64_t a_offset, const RawFile& b,
                                int64_t b_offset) {
    int64_t done = 0;
    for (int64_t piece = kFirstPiece;; piece = kPiece) {
        const int64_t in_a = a.Read(a_offset + done, a_.get(), piece);
        const int64_t in_b = b.Read(b_offset + done, b_.get(), piece);
        const auto both = static_cast<std::size_t>(std::min(in_a, in_b));
        if (std::memcmp(a_.get(), b_.get(), both) != 0) {
            return done + (std::mismatch(a_.get(), a_.get() + both, b_.get()).first - a_.get());
        }
        done += static_cast<int64_t>(both);
        if (in_a != in_b) return done;
        if (in_a < piece) return -1;
    }
}

bool ByteCompare::Equal(const RawFile& a, const RawFile& b) {
    return a.Size() == b.Size() && EqualBytes(a, 0, b, 0) < 0;
}

}  // namespace lab
