// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/chunks.h"

#include <algorithm>

#include "lab/page/pack.h"
#include "lab/report/spool.h"

namespace lab {

namespace {

constexpr char kNoBlockValues = '\xFF';

// fnJoin(records) makes the bytes of a chunk from those of its frames.
template <typename Join>
Chunks PackSpool(const RecordedRun& run, const std::string& from, const std::string& name,
                 const InterruptGuard& interrupt, Join fnJoin) {
    const SpoolReader reader(run.folder + "/" + from);
    Chunks chunks{run.folder + "/" + name, {}};
    SpoolWriter writer(chunks.path);
    for (int first = 0; first < run.Frames(); first += kChunkFrames) {
        interrupt.Check();
        std::vector<std::string> records;
        for (int i = first; i < std::min(first + kChunkFrames, run.Frames()); ++i) {
            records.push_back(reader.Read(static_cast<size_t>(i)));
        }
        const std::string packed = Deflate(fnJoin(first, &records));
        chunks.sizes.push_back(static_cast<int64_t>(packed.size()));
        writer.Append(packed);
    }
    writer.Finish();
    return chunks;
}

std::string Joined(const std::vector<std::string>& records) {
    std::string all;
    for (const std::string& record : records) all += record;
    return all;
}

// All frames' bitmaps, then all frames' values of plane 0, of plane 1 and so on.
std::string JoinPlanes(const std::vector<std::string>& records, size_t bitmap, size_t planes) {
    std::string all;
    for (const std::string& record : records) all.append(record, 0, bitmap);
    for (size_t p = 0; p < planes; ++p) {
        for (const std::string& record : records) {
            const size_t kept = (record.size() - bitmap) / planes;
            all.append(record, bitmap + p * kept, kept);
        }
    }
    return all;
}

}  // namespace

Chunks PackBlocks(const RecordedRun& run, const std::string& name, const KeepFrame& keep,
                  const InterruptGuard& interrupt) {
    return PackSpool(run, "blocks", name, interrupt,
                     [&](int first, std::vector<std::string>* records) {
                         for (size_t i = 0; i < records->size(); ++i) {
                             if (!keep(first + static_cast<int>(i))) {
                                 (*records)[i].assign(1, kNoBlockValues);
                             }
                         }
                         return Joined(*records);
                     });
}

Chunks PackLuma(const RecordedRun& run, const InterruptGuard& interrupt) {
    return PackSpool(run, "luma", "luma.packed", interrupt,
                     [](int, std::vector<std::string>* records) {
                         for (size_t i = records->size(); i-- > 1;) {
                             std::string& now = (*records)[i];
                             const std::string& before = (*records)[i - 1];
                             for (size_t k = 0; k < now.size(); ++k) {
                                 now[k] = static_cast<char>(now[k] - before[k]);
                             }
                         }
                         return Joined(*records);
                     });
}

Chunks PackVectors(const RecordedRun& run, const InterruptGuard& interrupt) {
    const auto bitmap = static_cast<size_t>((run.Blocks() + 7) / 8);
    const size_t planes = run.facts["run"]["weights"].get<bool>() ? 11 : 10;
    return PackSpool(run, "vectors", "vectors.packed", interrupt,
                     [&](int, std::vector<std::string>* records) {
                         return JoinPlanes(*records, bitmap, planes);
                     });
}

Chunks PackCases(const RecordedRun& run, const InterruptGuard& interrupt) {
    return PackSpool(run, "cases", "cases.packed", interrupt,
                     [](int, std::vector<std::string>* records) { return Joined(*records); });
}

}  // namespace lab
