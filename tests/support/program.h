// Running MD as a child process in a folder of its own, and looking at what it left.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

struct Outcome {
    int nExit;         // exit status as a parent sees it; 128 + signal for a killed process
    std::string sOut;  // standard output
    std::string sErr;  // standard error
};

// A new empty folder, removed with what it holds when the object goes.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const fs::path& Path() const { return tPath; }
    fs::path operator/(const std::string& sName) const { return tPath / sName; }

  private:
    fs::path tPath;
};

std::string ReadAll(const fs::path& tPath);
void WriteAll(const fs::path& tPath, const std::string& sBytes);

// Runs a program (argv[0] is its name as it sees it) with its working folder at tFolder.
Outcome RunProgram(const fs::path& tFolder, const std::vector<std::string>& aArguments);

// Runs the MD that was built with the tests. `aOptions` are the arguments behind its name.
Outcome RunMd(const fs::path& tFolder, const std::vector<std::string>& aOptions);

// Settings under which a small raw clip "in.yuv" of W x H runs into the folder "out"; later
// assignments win, so a test appends its own.
std::string BaseConfig(int nWidth, int nHeight);

// Puts a copy of that MD into tFolder, without its tools; "./MD" runs it there.
void CopyMd(const fs::path& tFolder);

// One line for a table's failure message: status and both streams.
std::ostream& operator<<(std::ostream& tOut, const Outcome& t);
