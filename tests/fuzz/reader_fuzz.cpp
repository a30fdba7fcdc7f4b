// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The readers of dumps: the first byte picks the kind of file, the rest is the file. A reader takes
// it or throws its own error; what it takes is whole, and the fast path takes what the plain one
// does.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "lab/dumps/readers.h"
#include "lab/tool/error.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void RequireWhole(const lab::Frame& frame) {
    for (int f = 0; f < lab::kFieldCount; ++f) {
        const auto field = static_cast<lab::Field>(f);
        const auto width = static_cast<std::size_t>(lab::Info(field).per_block);
        Require(!frame.Has(field) || frame.values[field].size() == frame.Blocks() * width);
    }
}

// The frames and the error of a running file, as one text.
std::string Told(const std::string& path, lab::FileKind kind, bool plain) {
    std::string told;
    lab::Frame frame;
    try {
        lab::RunningFile file(path, kind);
        if (plain) file.UsePlainReader();
        while (file.Next(&frame)) {
            RequireWhole(frame);
            told += std::to_string(frame.index) + ":";
            for (const auto& values : frame.values) {
                for (const uint16_t value : values) told += std::to_string(value) + ",";
            }
        }
    } catch (const lab::Error& error) {
        told += error.what();
    }
    return told;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const auto kind = static_cast<lab::FileKind>(data[0] % lab::kVideoFile);
    const int file = memfd_create("dump", MFD_CLOEXEC);
    Require(file >= 0 && write(file, data + 1, size - 1) == static_cast<ssize_t>(size - 1));
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    try {
        if (IsRunning(kind)) {
            Require(Told(path, kind, false) == Told(path, kind, true));
            lab::RunningRange(path);
            lab::FindFrame(path, 3);
        } else if (kind == lab::kCountFile) {
            lab::ReadCountLog(path);
        } else {
            lab::Frame frame;
            lab::ReadFrameFile(kind, path, &frame);
            RequireWhole(frame);
        }
    } catch (const lab::Error&) {
    }
    close(file);
    return 0;
}
