// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/first_difference.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <sstream>
#include <tuple>
#include <vector>

namespace {

// In the order in which a frame passes them; each works on what those before it made.
enum Stage { kSchedule, kFeature, kThreshold, kDistance, kDecision, kBox, kGate, kStages };
constexpr const char* aStages[kStages] = {"schedule", "feature", "threshold", "distance",
                                          "decision", "box",     "gate"};

// One value that a running dump or the log shows.
struct Value {
    int nFrame;
    Stage nStage;
    std::string sPlace, sText;

    bool operator==(const Value&) const = default;
};

void AddVector(const std::string& sLine, Value t, std::vector<Value>* pValues) {
    std::istringstream tBytes(sLine.substr(sLine.find(':') + 1));
    const std::string sBlock = t.sPlace;
    for (int k = 0; tBytes >> t.sText; ++k) {
        t.sPlace = sBlock + "v[" + std::to_string(k) + "]";
        pValues->push_back(t);
    }
}

// The values of hogmd_golden.txt and hogmd_dist.txt, which are hexadecimal.
void AddDump(const std::string& sDump, std::vector<Value>* pValues) {
    int nFrame = -1;
    unsigned x = 0, y = 0, n = 0, d = 0;
    std::string sBlock, sLine;
    for (std::istringstream t(sDump); std::getline(t, sLine);) {
        const char* sz = sLine.c_str();
        const auto Add = [&](Stage nStage, const char* szField, unsigned nValue) {
            pValues->push_back({nFrame, nStage, sBlock + szField, std::to_string(nValue)});
        };
        if (std::sscanf(sz, "Frame_idx=%d", &nFrame) == 1) continue;
        if (std::sscanf(sz, "x:%x,y:%x", &x, &y) == 2) {
            sBlock = "block (" + std::to_string(x) + "," + std::to_string(y) + "), ";
        } else if (std::sscanf(sz, "hogDistAvail:%x,hogDis:%x", &n, &d) == 2) {
            Add(kDistance, "dist", d);
            Add(kDecision, "avail", n);
        } else if (std::sscanf(sz, "nAvgY=%x", &n) == 1) {
            Add(kFeature, "nAvgY", n);
        } else if (std::sscanf(sz, "histNorm2=%x", &n) == 1) {
            Add(kFeature, "histNorm2", n);
        } else if (sLine.starts_with("MATRIX_MODE2:")) {
            AddVector(sLine, {nFrame, kFeature, sBlock, ""}, pValues);
        }
    }
}

Stage StageOfLine(const std::string& sLine) {
    const std::pair<const char*, Stage> aStarts[] = {
        {"blockLine", kThreshold}, {"BlockHog", kDistance}, {"  iAccuDist", kDistance},
        {"MotionDetected", kBox},  {"obj RECT", kBox},      {"LOG:", kBox},
        {"bbox", kGate},           {"PP_V2", kGate}};
    for (const auto& [szStart, nStage] : aStarts) {
        if (sLine.starts_with(szStart)) return nStage;
    }
    return kSchedule;
}

void AddLog(const std::string& sLog, std::vector<Value>* pValues) {
    int nFrame = -1;
    std::string sLine;
    for (std::istringstream t(sLog); std::getline(t, sLine);) {
        std::sscanf(sLine.c_str(), "*****frame %d", &nFrame);
        pValues->push_back({nFrame, StageOfLine(sLine), "log line", "<" + sLine + ">"});
    }
}

// All values of a run, stage by stage.
std::vector<Value> Values(const Files& aFiles) {
    std::vector<Value> a;
    for (const char* szDump : {"hogmd_golden.txt", "hogmd_dist.txt"}) {
        if (aFiles.contains(szDump)) AddDump(aFiles.at(szDump), &a);
    }
    if (aFiles.contains("stdout")) AddLog(aFiles.at("stdout"), &a);
    std::ranges::stable_sort(a, {}, &Value::nStage);
    return a;
}

std::vector<Value> OfStage(const std::vector<Value>& a, Stage nStage) {
    std::vector<Value> aStage;
    std::ranges::copy_if(a, std::back_inserter(aStage),
                         [&](const Value& t) { return t.nStage == nStage; });
    return aStage;
}

std::string ValueDifference(const Files& aWant, const Files& aGot) {
    const std::vector<Value> aWantAll = Values(aWant), aGotAll = Values(aGot);
    std::optional<std::tuple<int, int, std::string>> tFirst;
    for (int n = 0; n < kStages; ++n) {
        const auto a = OfStage(aWantAll, Stage(n)), b = OfStage(aGotAll, Stage(n));
        const auto [p, q] = std::ranges::mismatch(a, b);
        if (p == a.end() && q == b.end()) continue;
        const Value& t = p != a.end() ? *p : *q;
        const std::string sText = "frame " + std::to_string(t.nFrame) + ", " + t.sPlace +
                                  ": expected " + (p != a.end() ? p->sText : "none") + ", got " +
                                  (q != b.end() ? q->sText : "none") + " (stage: " + aStages[n] +
                                  ")";
        const auto tFound = std::tuple(t.nFrame, n, sText);
        if (!tFirst || tFound < *tFirst) tFirst = tFound;
    }
    return tFirst ? std::get<2>(*tFirst) : "";
}

std::string LineDifference(const std::string& sName, const std::string& sWant,
                           const std::string& sGot) {
    std::istringstream tWant(sWant), tGot(sGot);
    for (int nLine = 1;; ++nLine) {
        std::string sWantLine, sGotLine;
        const bool bWant = bool(std::getline(tWant, sWantLine));
        const bool bGot = bool(std::getline(tGot, sGotLine));
        if (sWantLine != sGotLine || bWant != bGot || !bWant) {
            return sName + ", line " + std::to_string(nLine) + ": expected <" + sWantLine +
                   ">, got <" + sGotLine + ">";
        }
    }
}

}  // namespace

std::string FirstDifference(const Files& aWant, const Files& aGot) {
    if (aWant == aGot) return "";
    const std::string s = ValueDifference(aWant, aGot);
    if (!s.empty()) return s;
    for (const auto& [sName, sText] : aWant) {
        if (!aGot.contains(sName)) return sName + ": not written";
        if (sText != aGot.at(sName)) return LineDifference(sName, sText, aGot.at(sName));
    }
    for (const auto& [sName, sText] : aGot) {
        if (!aWant.contains(sName)) return sName + ": written, but not expected";
    }
    return "";
}
