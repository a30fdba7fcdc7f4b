// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// make_clip WIDTH HEIGHT FRAMES OUT [NAME=NUMBER]...: writes a raw planar 4:2:0 clip of a figure
// that walks through a scene, or, where names are given, of squares on a ground (squares.h).
// make_clip --scene SCENE WIDTH HEIGHT FRAMES OUT LABELS: writes a scene by cause (scenes.h) and
// its labels. The same arguments give the same bytes on every machine.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "tools/scenes.h"
#include "tools/squares.h"
#include "tools/walker.h"

namespace {

constexpr int32_t kMinSize = 16;
constexpr int32_t kMaxSize = 4096;
constexpr int32_t kMaxFrames = 10000;

bool ReadNumber(const char* szText, int32_t nMin, int32_t nMax, int32_t* pValue) {
    char* pEnd = nullptr;
    const long nValue = std::strtol(szText, &pEnd, 10);
    if (pEnd == szText || *pEnd != '\0' || nValue < nMin || nValue > nMax) return false;
    *pValue = static_cast<int32_t>(nValue);
    return true;
}

int WriteClip(const char* szPath, int32_t nFrames, int32_t nTail,
              const std::function<std::string(int32_t)>& fnFrame) {
    std::FILE* pFile = std::fopen(szPath, "wb");
    if (pFile == nullptr) {
        std::fprintf(stderr, "make_clip: cannot write %s\n", szPath);
        return 1;
    }
    bool bWhole = true;
    const auto Write = [&](const std::string& s) {
        bWhole &= std::fwrite(s.data(), 1, s.size(), pFile) == s.size();
    };
    for (int32_t n = 0; n < nFrames; ++n) Write(fnFrame(n));
    Write(std::string(static_cast<size_t>(nTail), 'x'));
    bWhole &= std::fclose(pFile) == 0;
    if (!bWhole) std::fprintf(stderr, "make_clip: %s came out short\n", szPath);
    return bWhole ? 0 : 1;
}

int Usage() {
    std::fprintf(
        stderr,
        "usage: make_clip WIDTH HEIGHT FRAMES OUT [NAME=NUMBER]...\n"
        "       make_clip --scene SCENE WIDTH HEIGHT FRAMES OUT LABELS\n"
        "       make_clip --scenes\n"
        "  WIDTH, HEIGHT: %d to %d, even but for squares; FRAMES: 1 to %d; OUT: a raw 4:2:0\n"
        "  file; LABELS: a csv. Names, for the squares: squares size stepy speed boil stop\n"
        "  from to contrast noise flicker cut tail. --scenes lists the scenes.\n",
        kMinSize, kMaxSize, kMaxFrames);
    return 2;
}

int ListScenes() {
    for (const SceneRow& tScene : Scenes()) {
        std::printf("%-8s  %s\n", tScene.szName, tScene.szWhat);
    }
    return 0;
}

// The six arguments after --scene.
int WriteScene(char** argv) {
    SceneClip t{};
    if (!ReadNumber(argv[1], kMinSize, kMaxSize, &t.nWidth) || t.nWidth % 2 != 0 ||
        !ReadNumber(argv[2], kMinSize, kMaxSize, &t.nHeight) || t.nHeight % 2 != 0 ||
        !ReadNumber(argv[3], 1, kMaxFrames, &t.nFrames)) {
        return Usage();
    }
    for (const SceneRow& tScene : Scenes()) {
        if (std::strcmp(tScene.szName, argv[0]) != 0) continue;
        const int nStatus =
            WriteClip(argv[4], t.nFrames, 0, [&](int32_t n) { return SceneFrame(tScene, t, n); });
        if (nStatus != 0) return nStatus;
        return WriteClip(argv[5], 1, 0, [&](int32_t) { return SceneLabels(tScene, t); });
    }
    std::fprintf(stderr, "make_clip: no scene has the name %s; --scenes lists them\n", argv[0]);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    WalkerClip tWalker{};
    SquaresClip tSquares;
    int32_t &w = tWalker.nWidth, &h = tWalker.nHeight, &nFrames = tWalker.nFrames;
    if (argc == 2 && std::strcmp(argv[1], "--scenes") == 0) return ListScenes();
    if (argc == 8 && std::strcmp(argv[1], "--scene") == 0) return WriteScene(argv + 2);
    if (argc < 5 || !ReadNumber(argv[1], kMinSize, kMaxSize, &w) ||
        !ReadNumber(argv[2], kMinSize, kMaxSize, &h) ||
        !ReadNumber(argv[3], 1, kMaxFrames, &nFrames)) {
        return Usage();
    }
    if (argc == 5) {
        if (w % 2 != 0 || h % 2 != 0) return Usage();
        return WriteClip(argv[4], nFrames, 0, [&](int32_t n) { return WalkerFrame(tWalker, n); });
    }
    for (int i = 5; i < argc; ++i) {
        if (!SquaresSet(&tSquares, argv[i]) || tSquares.nTail < 0) return Usage();
    }
    return WriteClip(argv[4], nFrames, tSquares.nTail,
                     [&](int32_t n) { return SquaresFrame(tSquares, w, h, n); });
}
