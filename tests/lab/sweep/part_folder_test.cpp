// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a killed conversion leaves is removed, and nothing that another process may still write.

#include "lab/sweep/part_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <set>

#include "lab/sweep/md_process.h"
#include "lab/tool/temp_folder.h"

namespace fs = std::filesystem;

namespace lab {
namespace {

pid_t IdOfDeadProcess() {
    const pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    return child;
}

// A folder with a raw file in it, both last changed so many hours ago.
void Make(const std::string& folder, int folder_hours, int file_hours) {
    fs::create_directories(folder);
    WritePlain(folder + "/clip.yuv", "bytes");
    const auto before = [](int hours) {
        return fs::file_time_type::clock::now() - std::chrono::hours(hours);
    };
    fs::last_write_time(folder + "/clip.yuv", before(file_hours));
    fs::last_write_time(folder, before(folder_hours));
}

std::set<std::string> NamesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

TEST(PartFolder, OnlyThoseOfDeadProcessesAreRemoved) {
    const TempFolder scratch;
    const std::string clips = scratch.Path() + "/clips";
    RemoveDeadParts(clips);  // of a new cache there is no folder yet

    const std::string alive = PartFolder("aa");
    const std::string own = std::to_string(getpid());
    ASSERT_TRUE(alive.starts_with("aa.part-") && alive.ends_with("-" + own)) << alive;
    const std::string here = alive.substr(2, alive.size() - 2 - own.size());
    const std::string dead = here + std::to_string(IdOfDeadProcess());
    Make(clips + "/" + alive, 1, 1);
    Make(clips + "/bb" + dead, 0, 0);
    Make(clips + "/cc" + dead + ".old", 0, 0);
    Make(clips + "/dd.part-other-host-12", 1, 1);
    Make(clips + "/ee.part-other-host-12", 30, 1);  // a long conversion, still written
    Make(clips + "/ff.part-other-host-12", 30, 30);
    Make(clips + "/gg" + here, 1, 1);
    Make(clips + "/hh", 100, 100);
    RemoveDeadParts(clips);
    const std::set<std::string> kept = {alive, "dd.part-other-host-12", "ee.part-other-host-12",
                                        "gg" + here, "hh"};
    EXPECT_EQ(NamesIn(clips), kept);
}

}  // namespace
}  // namespace lab
