// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/video.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "lab/probe/tools.h"
#include "lab/report/spool.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"

namespace lab {

namespace {

int Even(int64_t n) {
    return static_cast<int>((n + 1) & ~int64_t{1});
}

// An odd frame has chroma planes of no size that the coder knows, so only its luma is taken.
bool LumaOnly(const VideoSource& source) {
    return source.width % 2 != 0 || source.height % 2 != 0;
}

std::vector<std::string> CoderArguments(const VideoSource& source, const VideoSettings& settings,
                                        const std::string& out) {
    const PictureSize size = SizeOfVideo(source, settings);
    const auto Pair = [](int a, int b, char mark) {
        return std::to_string(a) + mark + std::to_string(b);
    };
    std::string filter = "pad=" + Pair(Even(source.width), Even(source.height), ':');
    filter += ",scale=" + Pair(size.width, size.height, ':');
    return {ToolFolder() + "/ffmpeg",
            "-y",
            "-v",
            "error",
            "-f",
            "rawvideo",
            "-pix_fmt",
            LumaOnly(source) ? "gray" : "yuv420p",
            "-s",
            Pair(source.width, source.height, 'x'),
            "-r",
            "25",
            "-i",
            "pipe:0",
            "-vf",
            filter,
            "-c:v",
            "libx264",
            "-crf",
            std::to_string(settings.crf),
            "-g",
            "25",
            "-keyint_min",
            "25",
            "-sc_threshold",
            "0",
            "-bf",
            "0",
            "-pix_fmt",
            "yuv420p",
            "-movflags",
            "+faststart",
            out};
}

// A running ffmpeg that reads frames from a pipe.
class Coder {
  public:
    Coder(std::vector<std::string> arguments, const InterruptGuard& interrupt)
        : interrupt_(interrupt) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) Fail(errno);
        std::vector<char*> pointers;
        for (std::string& text : arguments) pointers.push_back(text.data());
        pointers.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
        posix_spawnattr_setsigmask(&attributes, &interrupt.Before());
        const int error =
            posix_spawn(&child_, pointers[0], &actions, &attributes, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
        close(ends[0]);
        pipe_.reset(fdopen(ends[1], "wb"));
        if (error != 0) {
            child_ = 0;
            Fail(error);
        }
    }
    ~Coder() {
        if (child_ <= 0) return;
        kill(-child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    Coder(const Coder&) = delete;
    Coder& operator=(const Coder&) = delete;

    void Write(const std::string& frame) {
        if (std::fwrite(frame.data(), 1, frame.size(), pipe_.get()) != frame.size()) broken_ = true;
    }

    void Finish() {
        if (std::fclose(pipe_.release()) != 0) broken_ = true;
        const pid_t child = child_;
        const int status = interrupt_.Wait(child);
        child_ = 0;
        if (status != 0 || broken_) throw Error("the pictures could not be encoded: ffmpeg failed");
    }

  private:
    [[noreturn]] static void Fail(int error) {
        throw Error(std::string("ffmpeg cannot be started: ") + std::strerror(error));
    }

    const InterruptGuard& interrupt_;
    File pipe_;
    pid_t child_ = 0;
    bool broken_ = false;
};

}  // namespace

PictureSize SizeOfVideo(const VideoSource& source, const VideoSettings& settings) {
    const int even_width = Even(source.width);
    const int even_height = Even(source.height);
    PictureSize size{even_width, even_height, source.width, source.height};
    if (even_width > settings.max_width) {
        size.width = Even(settings.max_width);
        size.height = std::max(Even(int64_t{even_height} * size.width / even_width), 2);
        size.shown_width = size.width;
        size.shown_height = size.height;
    }
    return size;
}

void EncodeVideo(const VideoSource& source, const VideoSettings& settings, const std::string& out,
                 bool quiet, const InterruptGuard& interrupt) {
    const File file(std::fopen(source.path.c_str(), "rb"));
    if (file == nullptr || fseeko(file.get(), source.offset, SEEK_SET) != 0) {
        throw Error(source.path + ": cannot be read: " + std::strerror(errno));
    }
    // A coder that fails must not end this program by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    Coder coder(CoderArguments(source, settings, out), interrupt);
    Progress progress("pictures", source.frames, quiet);
    const auto wanted = static_cast<size_t>(LumaOnly(source) ? int64_t{source.width} * source.height
                                                             : source.frame_bytes);
    std::string frame(static_cast<size_t>(source.frame_bytes), '\0');
    for (int64_t i = 0; i < source.frames; ++i) {
        interrupt.Check();
        if (std::fread(frame.data(), 1, frame.size(), file.get()) != frame.size()) {
            throw Error(source.path + ": ends before its frame " + std::to_string(i));
        }
        coder.Write(frame.substr(0, wanted));
        progress.Show(i + 1);
    }
    coder.Finish();
}

std::string CodecOf(const std::string& mp4) {
    const size_t at = mp4.find("avcC");
    if (at == std::string::npos || at + 8 > mp4.size()) return "";
    char text[16];
    const auto Byte = [&](size_t i) {
        return static_cast<unsigned>(static_cast<uint8_t>(mp4[at + i]));
    };
    std::snprintf(text, sizeof text, "avc1.%02x%02x%02x", Byte(5), Byte(6), Byte(7));
    return text;
}

}  // namespace lab
