// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The frame loop of the slow twin and the text of the dumps.
#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "tests/twin/twin_state.h"

void Put(std::string& s, const char* pFormat, ...) {
    char aText[1024];
    va_list tArguments;
    va_start(tArguments, pFormat);
    const int n = vsnprintf(aText, sizeof aText, pFormat, tArguments);
    va_end(tArguments);
    s.append(aText, size_t(n));
}

namespace {

std::string Joined(const std::array<int, 10>& v, const char* pBetween) {
    std::string s;
    for (size_t k = 0; k < v.size(); ++k) s += (k > 0 ? pBetween : "") + std::to_string(v[k]);
    return s;
}

std::string FeatureText(const TwinState& t, int nSlot) {
    std::string s = "Cur Frame Features\nEnabled: MOG,\n";
    for (int i = 0; i < t.nBlks; ++i) {
        const TwinFeature& f = t.aPool[nSlot][size_t(i)];
        Put(s, "blk[%d, %d]:, %s , , \n", i % t.nCols, i / t.nCols, Joined(f.v, " ").c_str());
        Put(s, "histNorm:1\nAvgY:%d\n", f.nAvgY);
    }
    return s;
}

std::string MapRows(const TwinState& t, const std::vector<int>& aMap) {
    std::string s;
    for (int i = 0; i < t.nBlks; ++i) {
        Put(s, "%s%d", i % t.nCols > 0 ? "," : "  [", aMap[size_t(i)]);
        if ((i + 1) % t.nCols == 0) s += i + 1 < t.nBlks ? "],\n" : "]\n";
    }
    return s;
}

std::string JsonSection(const TwinState& t, int nSlot) {
    std::string s, sCells, sBlocks;
    for (int i = 0; i < t.nBlks; ++i) {
        const auto& v = t.aPool[nSlot][size_t(i)].v;
        const char* pEnd = i + 1 < t.nBlks ? "," : "";
        for (size_t c = 0; c < 4; ++c) {
            Put(sCells, "   [%d,%d]%s\n", v[2 * c], v[2 * c + 1], c < 3 ? "," : pEnd);
        }
        Put(sBlocks, "   [%s]%s\n", Joined(v, ",").c_str(), pEnd);
    }
    Put(s, " \"MOG\":{\n  \"BlkW\": %d,\n  \"BlkH\": %d,  \"Cell\": 4,\n", t.nCols, t.nRows);
    s += "  \"CellData\": [\n" + sCells + "  ],\n  \"BlkData\": [\n" + sBlocks + "  ]\n }\n ,\n";
    s += " \"Dist\": [\n" + MapRows(t, t.aDist) + " ]\n ,\n";
    return s + " \"Avail\": [\n" + MapRows(t, t.aAvail) + " ]\n";
}

std::string Csv(const TwinState& t) {
    const bool bVector = (t.p.nMD_MetricMode & kMetricMog) != 0;
    std::string s = "Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\t";
    if (bVector) {
        s += "Cell0 MoGX\tCell1 MoGX\tCell2 MoGX\tCell3 MoGX\t";
        s += "Cell0 MoGY\tCell1 MoGY\tCell2 MoGY\tCell3 MoGY\tBlock MoGX\tBlock MoGY\t";
    }
    s += "Dist\tAvailMask\r\n";
    for (int i = 0; i < t.nBlks; ++i) {
        const TwinFeature& f = t.Cur(i);
        Put(s, "%d\t%d\t%d\t1\t", i / t.nCols, i % t.nCols, f.nAvgY);
        if (bVector) s += Joined(f.v, "\t") + "\t";
        Put(s, "%d\t%d\r\n", t.Dist(i), t.aAvail[size_t(i)]);
    }
    return s;
}

void RunningHead(const TwinState& t, std::string& s) {
    const char* pStars = "****************\n";
    Put(s, "%sFrame_idx=%03d\n%s", pStars, t.nFrame + t.tSim.nStartFrameIdx, pStars);
}

void Golden(const TwinState& t, std::string& s) {
    RunningHead(t, s);
    for (int i = 0; i < t.nBlks; ++i) {
        const TwinFeature& f = t.Cur(i);
        Put(s, "x:%03x,y:%03x\n", i % t.nCols, i / t.nCols);
        if (t.p.nMD_MetricMode == 0) continue;
        Put(s, "nAvgY=%02x\nMATRIX_MODE2:", f.nAvgY);
        for (const int v : f.v) Put(s, "%02x ", v);
        Put(s, "\nhistNorm2=%02x\n", f.nNorm2);
    }
}

std::string DistText(const TwinState& t) {
    std::string s = "Output BlkHogDist\n";
    for (int i = 0; i < t.nBlks; ++i) {
        Put(s, "[%03d, %03d]: %03d ", i % t.nCols, i / t.nCols, t.Dist(i));
        if ((i + 1) % t.nCols == 0) s += "\n";
    }
    return s;
}

std::string Report(const TwinState& t) {
    std::string s;
    Put(s, "{\n  \"bMotionDetected\": %d,\n  \"count\": %d,\n  \"objs\" : [\n", t.bMotion, t.nObj);
    if (t.nObj > 0) {
        Put(s, "    {\n      \"left\": %d,\n      \"top\": %d,\n", t.tBox.left, t.tBox.top);
        Put(s, "      \"right\": %d,\n      \"bottom\": %d\n    }\n", t.tBox.right, t.tBox.bottom);
    }
    return s + "  ]\n}\n";
}

void Dump(TwinState& t) {
    Files& aFiles = t.aFiles;
    std::string sNumber;
    Put(sNumber, "%04d", t.nFrame + t.tSim.nStartFrameIdx + 1);
    if ((t.p.nDbgEn & kDbgFeatures) != 0) {
        aFiles[sNumber + "_HOGCur.txt"] = FeatureText(t, t.nCurSlot);
        aFiles[sNumber + "_HOGRef.txt"] = FeatureText(t, t.nRefSlot);
        aFiles[sNumber + "_Full.json"] = "{\n" + JsonSection(t, t.nCurSlot) + ",\n\"Ref\" : {\n" +
                                         JsonSection(t, t.nRefSlot) + "}\n}\n";
        aFiles[sNumber + "_Full.csv"] = Csv(t);
        Golden(t, aFiles["hogmd_golden.txt"]);
    }
    if ((t.p.nDbgEn & kDbgDistances) != 0) {
        aFiles[sNumber + "_HOGDist.txt"] = DistText(t);
        std::string& sJson = aFiles[sNumber + "_HOGDist.json"];
        Put(sJson, "{\n \"BlkW\": %d,\n \"BlkH\": %d,\n \"Dist\": [\n", t.nCols, t.nRows);
        sJson += MapRows(t, t.aDist) + " ]\n}\n";
        std::string& s = aFiles["hogmd_dist.txt"];
        RunningHead(t, s);
        for (int i = 0; i < t.nBlks; ++i) {
            Put(s, "x:%03x,y:%03x\n", i % t.nCols, i / t.nCols);
            Put(s, "hogDistAvail:%04x,hogDis:%04x\n", t.aAvail[size_t(i)], t.Dist(i));
        }
    }
    if ((t.p.nDbgEn & kDbgObjects) != 0) aFiles[sNumber + "_ObjOut.txt"] = Report(t);
}

// Slots of this frame and of its reference in a ring one longer than the reference distance.
void Schedule(TwinState& t) {
    const int R = t.p.nMD_RefFrmIdx, n = t.nFrame;
    t.nCurSlot = n % (R + 1);
    t.nRefSlot = n < R ? 0 : (n + 1) % (R + 1);
    if ((t.p.nDbgEn & kDbgDetail) == 0) return;
    std::string& s = t.sOut;
    if (t.p.nMD_HogRefMode == 0) Put(s, "CurFrmId=%d, RefBufIdx=%d\n", n, t.nRefSlot);
    if (n > 0) Put(s, "Copy Y of frame(%d) to ppPrevYBuffer(%d).\n", n - 1, t.nRefSlot);
    Put(s, "CurFrmId=%d, RefBufIdx=%d\n", n, t.nRefSlot);
}

}  // namespace

Files RunTwin(const SimParams& tParams, const std::string& sClip) {
    TwinState t;
    t.tSim = tParams;
    t.p = tParams.tMd;
    t.W = t.p.nMD_ScaledW;
    t.H = t.p.nMD_ScaledH;
    t.S = t.p.nMD_HogBlockStride;
    t.nCols = (t.W - 16) / t.S + 1;
    t.nRows = (t.H - 16) / t.S + 1;
    t.nBlks = t.nCols * t.nRows;
    const size_t nBlocks = size_t(t.nBlks);
    for (auto& aSlot : t.aPool) aSlot.resize(nBlocks);
    for (auto& aRow : t.aRefineDist) aRow.resize(nBlocks);
    for (auto* p : {&t.aDist, &t.aAvail, &t.aRefineCnt, &t.aRefineActive}) p->resize(nBlocks);
    t.aHistory.resize(nBlocks);
    if ((t.p.nDbgEn & kDbgFeatures) != 0) t.aFiles["hogmd_golden.txt"];
    if ((t.p.nDbgEn & kDbgDistances) != 0) t.aFiles["hogmd_dist.txt"];
    const size_t nBytes = size_t((t.W * t.H * 3) >> 1);
    const int nStart = tParams.nStartFrameIdx, nFrames = tParams.nFramesToBeProcessed;
    for (; nFrames == -1 || t.nFrame < nFrames; ++t.nFrame) {
        const size_t nAt = std::min(nBytes * size_t(t.nFrame + nStart), sClip.size());
        t.sFrame = sClip.substr(nAt, nBytes);
        if (t.sFrame.size() < nBytes) {
            Put(t.sOut, "read frame %d error: %d, %d\n", t.nFrame + nStart, int(t.sFrame.size()),
                int(nBytes));
            break;
        }
        Put(t.sOut, "*****frame %d\n", t.nFrame + nStart);
        Schedule(t);
        TwinScan(t);
        TwinBoxes(t);
        Dump(t);
    }
    t.sOut += "finish.\nfinish.\n";
    t.aFiles["stdout"] = t.sOut;
    return t.aFiles;
}
