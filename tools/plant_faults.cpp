// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// plant_faults N SEED JOBS: what scripts/mutants.sh runs in the root of the tree; see there. Status
// 0: all survivors are accepted; 1: another one; 2: the tests cannot be trusted or run.
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "tools/fault_worker.h"
#include "tools/faults.h"

namespace fs = std::filesystem;

namespace {

struct Place {
    std::string sPath;
    Fault tFault;
};

// A fault as tests/mutants.txt names it.
struct FaultLine {
    std::string sPath;
    std::string sLine;     // without the fault; "*": every line of the file
    std::string sChanged;  // with it; empty: every fault of the line

    bool operator==(const FaultLine&) const = default;
};

struct Result {
    std::string sOutcome;
    FaultLine tLine;
};

using Sources = std::map<std::string, std::string>;  // contents by path

std::string Trimmed(const std::string& s) {
    const size_t n = s.find_first_not_of(" \t\r\n");
    return n == std::string::npos ? "" : s.substr(n, s.find_last_not_of(" \t\r\n") + 1 - n);
}

// All sources of lib/ and app/ that are built here. Read once: the tree may change while the faults
// are tried.
Sources ReadSources(const std::vector<std::string>& aFiles) {
    Sources tSources;
    for (const std::string& s : aFiles) {
        const std::string sEnd = fs::path(s).extension();
        const bool bSource = sEnd == ".cpp" || sEnd == ".h" || sEnd == ".inc";
        const bool bElsewhere =
            s.find("windows") != std::string::npos || s.find("neon") != std::string::npos;
        if (bSource && !bElsewhere && (s.starts_with("lib/") || s.starts_with("app/"))) {
            tSources[s] = ReadWhole(s);
        }
    }
    return tSources;
}

// The first nCount of all faults in an order that the seed gives, the same on every machine.
std::vector<Place> Draw(std::vector<Place> aFaults, size_t nCount, uint64_t nSeed) {
    std::mt19937_64 tRandom(nSeed);
    nCount = std::min(nCount, aFaults.size());
    for (size_t i = 0; i < nCount; ++i) {
        std::swap(aFaults[i], aFaults[i + tRandom() % (aFaults.size() - i)]);
    }
    aFaults.resize(nCount);
    return aFaults;
}

FaultLine LineOf(const Place& tPlace, const std::string& sSource) {
    const Fault& t = tPlace.tFault;
    const size_t nFirst = sSource.rfind('\n', t.nAt) + 1;  // npos + 1 is 0
    const std::string sLine = sSource.substr(nFirst, sSource.find('\n', t.nAt) - nFirst);
    const Fault tInLine = {t.nAt - nFirst, t.sOld, t.sNew};
    return {tPlace.sPath, Trimmed(sLine), Trimmed(Planted(sLine, tInLine))};
}

// tests/mutants.txt; its head says what the lines are.
std::vector<FaultLine> ReadAccepted() {
    std::ifstream tFile("tests/mutants.txt");
    if (!tFile) throw std::runtime_error("tests/mutants.txt: cannot be read");
    std::vector<FaultLine> aAccepted;
    FaultLine t;
    for (std::string s; std::getline(tFile, s);) {
        const std::string sRest = s.empty() ? "" : Trimmed(s.substr(1));
        if (s.starts_with('@')) t.sPath = sRest;
        if (s.starts_with('-')) {
            t.sLine = sRest;
            aAccepted.push_back(t);
        }
        if (s.starts_with('+')) {
            std::erase(aAccepted, t);  // not every fault of the line
            aAccepted.push_back({t.sPath, t.sLine, sRest});
        }
    }
    return aAccepted;
}

bool IsAccepted(const FaultLine& t, const std::vector<FaultLine>& aAccepted) {
    return std::any_of(aAccepted.begin(), aAccepted.end(), [&](const FaultLine& a) {
        return a == t || a == FaultLine{t.sPath, t.sLine, ""} || a == FaultLine{t.sPath, "*", ""};
    });
}

// Shared by the workers, under its lock.
struct Trials {
    const Sources& tSources;
    const std::vector<Place>& aDrawn;
    std::ofstream tLog;
    std::mutex tLock = {};
    size_t nNext = 0;  // of aDrawn
    std::vector<Result> aResults = {};
};

void Report(const std::string& sOutcome, const Place& tPlace, Trials* p) {
    const std::string& sSource = p->tSources.at(tPlace.sPath);
    const auto tAt = sSource.begin() + static_cast<std::ptrdiff_t>(tPlace.tFault.nAt);
    const FaultLine tLine = LineOf(tPlace, sSource);
    const std::string sText = sOutcome + ": " + tLine.sPath + ":" +
                              std::to_string(std::count(sSource.begin(), tAt, '\n') + 1) +
                              "\n  - " + tLine.sLine + "\n  + " + tLine.sChanged + "\n";
    const std::lock_guard tGuard(p->tLock);
    p->aResults.push_back({sOutcome, tLine});
    p->tLog << sText << std::flush;
    if (sOutcome != kSurvived) return;
    std::fputs(sText.c_str(), stdout);
    std::fflush(stdout);
}

// Tries faults until none is left. A worker that fails leaves none for the others either.
void Work(const FaultWorker& tWorker, Trials* p) {
    try {
        Prepare(tWorker);
        for (;;) {
            std::unique_lock tGuard(p->tLock);
            if (p->nNext == p->aDrawn.size()) return;
            const Place& t = p->aDrawn[p->nNext++];
            tGuard.unlock();
            const std::string sFaulty = Planted(p->tSources.at(t.sPath), t.tFault);
            Report(TryContents(tWorker, t.sPath, sFaulty), t, p);
        }
    } catch (...) {
        const std::lock_guard tGuard(p->tLock);
        p->nNext = p->aDrawn.size();
        throw;
    }
}

int Summarise(const std::vector<Result>& aResults) {
    const std::vector<FaultLine> aAccepted = ReadAccepted();
    int nBuilt = 0, nCaught = 0, nAccepted = 0, nOthers = 0;
    for (const Result& t : aResults) {
        nBuilt += t.sOutcome != kNoBuild;
        nCaught += t.sOutcome.starts_with(kCaught);
        if (t.sOutcome == kSurvived) ++(IsAccepted(t.tLine, aAccepted) ? nAccepted : nOthers);
    }
    std::printf(
        "%d built, %d caught, %d accepted survivors, %d others: %.1f %% of those that change "
        "anything observable are caught\n",
        nBuilt, nCaught, nAccepted, nOthers, 100.0 * nCaught / std::max(nBuilt - nAccepted, 1));
    return nOthers > 0 ? 1 : 0;
}

int PlantFaults(size_t nCount, uint64_t nSeed, size_t nJobs) {
    const fs::path tFolder = fs::absolute("build/mutants");
    fs::create_directories(tFolder);
    const std::vector<std::string> aFiles = TreeFiles(tFolder);
    const Sources tSources = ReadSources(aFiles);
    std::vector<Place> aFaults;
    for (const auto& [sPath, sSource] : tSources) {
        for (const Fault& t : FaultsIn(sSource)) aFaults.push_back({sPath, t});
    }
    const std::vector<Place> aDrawn = Draw(aFaults, nCount, nSeed);
    std::printf("%zu of %zu faults, seed %llu\n", aDrawn.size(), aFaults.size(),
                static_cast<unsigned long long>(nSeed));
    std::fflush(stdout);

    std::vector<FaultWorker> aWorkers;  // copies, before anything else changes the tree
    aWorkers.reserve(nJobs);
    for (size_t i = 0; i < nJobs; ++i) {
        const std::string s = std::to_string(i);
        aWorkers.push_back({tFolder / ("tree" + s), tFolder / ("build" + s)});
        CopyTree(aWorkers.back(), aFiles);
    }
    Trials tTrials{tSources, aDrawn, std::ofstream(tFolder / "results.txt", std::ios::app)};
    std::vector<std::future<void>> aRunning;
    aRunning.reserve(nJobs);
    for (const FaultWorker& t : aWorkers) {
        aRunning.push_back(std::async(std::launch::async, Work, t, &tTrials));
    }
    for (std::future<void>& t : aRunning) t.get();
    return Summarise(tTrials.aResults);
}

uint64_t Number(const std::string& s) {
    uint64_t n = 0;
    const auto tEnd = std::from_chars(s.data(), s.data() + s.size(), n);
    if (tEnd.ec != std::errc() || tEnd.ptr != s.data() + s.size()) {
        throw std::runtime_error("not a number: " + s);
    }
    return n;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: plant_faults N SEED JOBS\n");
        return 2;
    }
    try {
        const uint64_t nJobs = std::clamp<uint64_t>(Number(argv[3]), 1, 64);
        return PlantFaults(Number(argv[1]), Number(argv[2]), nJobs);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "plant_faults: %s\n", e.what());
        return 2;
    }
}
