// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/result_file.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "lab/tool/error.h"

namespace {

namespace fs = std::filesystem;

class ResultFileTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "mdlab.XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string Text(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    fs::path folder_;
};

// Runs it in a process of its own and gives the status as waitpid does.
template <typename Work>
int InChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST_F(ResultFileTest, ASignalThatEndsTheProcessLeavesNoPart) {
    const std::string path = (folder_ / "result.txt").string();
    std::ofstream(path) << "older";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const int status = InChild([&] {
            std::signal(signal, SIG_DFL);
            lab::ResultFile whole(path + "2"), half(path);
            half.Write("newer");
            whole.Commit();
            raise(signal);
        });
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(Text(path), "older");
        EXPECT_TRUE(fs::remove(path + "2"));
        EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);
    }
}

TEST_F(ResultFileTest, AnIgnoredSignalStaysIgnored) {
    const std::string path = (folder_ / "result.txt").string();
    const int status = InChild([&] {
        std::signal(SIGHUP, SIG_IGN);
        lab::ResultFile file(path);
        file.Write("whole");
        raise(SIGHUP);
        file.Commit();
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Text(path), "whole");
}

TEST_F(ResultFileTest, AppearsWholeOrNotAtAll) {
    const fs::path path = folder_ / "result.txt";
    std::ofstream(path) << "older";
    {
        lab::ResultFile dropped(path.string());
        dropped.Write("half");
    }
    EXPECT_EQ(Text(path), "older");
    lab::ResultFile file(path.string());
    file.Write("new");
    EXPECT_EQ(Text(path), "older");
    file.Commit();
    EXPECT_EQ(Text(path), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);
}

TEST_F(ResultFileTest, NamesThePathWhenItCannotBeWritten) {
    const auto message = [](const auto& act) -> std::string {
        try {
            act();
        } catch (const lab::Error& error) {
            return error.what();
        }
        return "no error";
    };
    const std::string missing = (folder_ / "none" / "x").string();
    EXPECT_EQ(message([&] { lab::ResultFile file(missing); }),
              missing + ": cannot be written: No such file or directory");

    // A folder is where the file should go.
    const std::string taken = (folder_ / "taken").string();
    fs::create_directory(taken);
    EXPECT_EQ(message([&] { lab::ResultFile file(taken); }),
              taken + ": cannot be written: Is a directory");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);

    // A device stays: the file must not take its place.
    const std::string full = (folder_ / "full").string();
    fs::create_symlink("/dev/full", full);
    EXPECT_EQ(message([&] {
                  lab::ResultFile file(full);
                  file.Write("text");
                  file.Commit();
              }),
              full + ": cannot be written: No space left on device");
    EXPECT_TRUE(fs::is_character_file(full));
}

TEST_F(ResultFileTest, KeepsTheReasonOfAWriteThatFailedEarly) {
    // By a link, so that a fault here replaces the link and not the device.
    const fs::path full = folder_ / "full";
    fs::create_symlink("/dev/full", full);
    lab::ResultFile file(full.string());
    file.Write(std::string(1 << 20, 'x'));
    std::string message;
    try {
        file.Commit();
    } catch (const lab::Error& error) {
        message = error.what();
    }
    EXPECT_EQ(message, full.string() + ": cannot be written: No space left on device");
}

}  // namespace
