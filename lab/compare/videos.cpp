// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/videos.h"

#include <algorithm>
#include <filesystem>

#include "lab/compare/bytes.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

struct Layout {
    int width;
    int chroma_width;
    int64_t luma, chroma, frame;  // bytes
};

Layout LayoutOf(const std::string& name, VideoSize size) {
    const int64_t width = size.width, height = size.height, luma = width * height;
    if (name.find("_P400") != std::string::npos) return {size.width, 1, luma, 0, luma};
    if (name.find("_P422") != std::string::npos) {
        const int64_t chroma = width / 2 * height;
        return {size.width, size.width / 2, luma, chroma, luma + 2 * chroma};
    }
    return {size.width, size.width / 2, luma, width / 2 * (height / 2), luma * 3 / 2};
}

void Locate(const Layout& layout, int64_t offset, VideoDifference* difference) {
    int width = layout.width;
    difference->plane = 'Y';
    if (offset >= layout.luma) {
        offset -= layout.luma;
        difference->plane = offset < layout.chroma ? 'U' : 'V';
        if (offset >= layout.chroma) offset -= layout.chroma;
        width = std::max(1, layout.chroma_width);
    }
    difference->x = static_cast<int>(offset % width);
    difference->y = static_cast<int>(offset / width);
}

}  // namespace

std::optional<VideoDifference> CompareVideos(const std::string& golden, const std::string& other,
                                             std::optional<VideoSize> size) {
    const RawFile a(golden), b(other);
    ByteCompare compare;
    int64_t equal = compare.EqualBytes(a, 0, b, 0);
    if (equal < 0) return std::nullopt;
    VideoDifference difference;
    difference.name = std::filesystem::path(golden).filename().string();
    if (!size) {
        size = SizeInName(difference.name);
        const auto of_other = SizeInName(std::filesystem::path(other).filename().string());
        const bool unlike = size && of_other &&
                            (size->width != of_other->width || size->height != of_other->height);
        if (unlike) throw Error(other + ": is of another size than " + golden + " by its name");
    }
    if (!size) {
        throw Error(golden + ": has no size like _320x180_ in its name; give it by --size WxH");
    }
    const Layout layout = LayoutOf(difference.name, *size);
    difference.golden_frames = a.Size() / layout.frame;
    difference.other_frames = b.Size() / layout.frame;
    difference.golden_cut = a.Size() % layout.frame != 0;
    difference.other_cut = b.Size() % layout.frame != 0;
    const int64_t both = std::min(a.Size(), b.Size());
    for (int64_t at = 0; at < both;) {
        equal = compare.EqualBytes(a, at, b, at);
        if (equal < 0 || at + equal >= both) break;
        const int64_t frame = (at + equal) / layout.frame;
        if (!difference.differs) {
            difference.differs = true;
            difference.frame = frame;
            Locate(layout, (at + equal) % layout.frame, &difference);
            difference.golden = static_cast<uint8_t>(a.Read(at + equal, 1)[0]);
            difference.other = static_cast<uint8_t>(b.Read(at + equal, 1)[0]);
        }
        ++difference.frames;
        at = (frame + 1) * layout.frame;
    }
    return difference;
}

}  // namespace lab
