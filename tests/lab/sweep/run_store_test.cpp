// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/run_store.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "lab/sweep/md_process.h"
#include "lab/tool/temp_folder.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;

namespace lab {
namespace {

const std::vector<FrameReport> kFrames = {
    {5, std::nullopt},       {6, std::nullopt}, {7, Box{0, 1, 20, 300}},
    {8, Box{0, 1, 20, 300}}, {9, std::nullopt},
};

// A folder with two runs; gives the path of the file.
std::string Fill(const std::string& folder, const std::string& frames) {
    StoredRun done;
    done.id = "aa";
    done.first = 5;
    done.count = 5;
    done.frames = frames;
    StoredRun refused;
    refused.id = "bb";
    refused.refused = true;
    refused.status = 255;
    refused.message = "ERROR: nMD_RefFrmIdx >= 15, not\nsupported";
    StoreRuns(folder, {done, refused});
    return fs::directory_iterator(folder)->path().string();
}

TEST(RunStore, GivesBackWhatWasStored) {
    const TempFolder scratch;
    const std::string frames = FramesText(kFrames);
    EXPECT_EQ(frames, "2.0,1,20,300;0,1,20,300;1.");
    Fill(scratch.Path() + "/runs", frames);
    RunIndex index;
    index.AddFolder(scratch.Path() + "/runs");
    index.AddFolder(scratch.Path() + "/missing");
    ASSERT_NE(index.Find("aa"), nullptr);
    EXPECT_EQ(FramesOf(*index.Find("aa")), kFrames);
    ASSERT_NE(index.Find("bb"), nullptr);
    EXPECT_EQ(index.Find("bb")->status, 255);
    EXPECT_EQ(index.Find("bb")->message, "ERROR: nMD_RefFrmIdx >= 15, not supported");
    EXPECT_EQ(index.Find("cc"), nullptr);
}

// Cut anywhere, or with any byte changed, a file counts as not there.
TEST(RunStore, AFileThatIsNotWholeHoldsNothing) {
    const TempFolder scratch;
    const std::string folder = scratch.Path() + "/runs";
    const std::string path = Fill(folder, FramesText(kFrames));
    const std::string whole = ReadTextFile(path);
    for (size_t i = 0; i < whole.size(); ++i) {
        for (const std::string& damaged :
             {whole.substr(0, i), whole.substr(0, i) + '?' + whole.substr(i + 1)}) {
            WritePlain(path, damaged);
            RunIndex index;
            index.AddFolder(folder);
            // The count in the last line is for the reader's eye.
            const bool in_count = i >= whole.rfind("end ") + 4 && i < whole.rfind(' ');
            if (in_count && damaged.size() == whole.size()) continue;
            ASSERT_EQ(index.Find("aa"), nullptr) << i;
        }
    }
}

}  // namespace
}  // namespace lab
