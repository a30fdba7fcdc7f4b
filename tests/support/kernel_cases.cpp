// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/kernel_cases.h"

#include <memory>

#include "md/block_grid.h"

namespace {

int32_t Draw(Inputs inputs, const Picker& Pick, int32_t nMax) {
    const int32_t nNear = nMax < 3 ? nMax : 3;
    switch (inputs) {
        case Inputs::kNearZero:
            return Pick(0, nNear);
        case Inputs::kNearMax:
            return Pick(nMax - nNear, nMax);
        case Inputs::kEitherEnd:
            return Pick(0, 1) * nMax;
        default:
            return Pick(0, nMax);
    }
}

KernelOutput Plane32(const std::string& sName, int32_t nBlocks) {
    return {sName,
            size_t{4} * static_cast<size_t>(RoundToRowStep(nBlocks)),
            [](size_t n) { return static_cast<int32_t>(n / 4); },
            {}};
}

KernelOutput Plane8(const std::string& sName, int32_t nBlocks) {
    return {sName,
            static_cast<size_t>(RoundToRowStep(nBlocks)),
            [](size_t n) { return static_cast<int32_t>(n); },
            {}};
}

KernelOutput RecordPlane(const std::string& sName, int32_t nBlocks) {
    return {sName,
            size_t{4} * static_cast<size_t>(RoundToRowStep(nBlocks)),
            [](size_t n) { return static_cast<int32_t>(n / 16 * 4 + n % 8 / 2); },
            {}};
}

constexpr const char* aHalfPlaneNames[kHalfPlanes] = {
    "left magnitude", "right magnitude", "left x", "right x", "left y", "right y", "luma"};

HalfRow HalfOf(KernelOutput* p) {
    HalfRow t{};
    for (int32_t*& pPlane : t.apPlane) pPlane = (p++)->At<int32_t>();
    return t;
}

KernelCase CellRowSumsCase(const Setting& s, Inputs inputs, const Picker& Pick) {
    const auto pSetup = std::make_shared<CellSetup>();
    CellSetupInit(&s.md, s.aGauss, pSetup.get());
    const auto pLuma = std::make_shared<Plane>(static_cast<size_t>(s.nWidth * s.nHeight));
    for (uint8_t& n : *pLuma) n = static_cast<uint8_t>(Draw(inputs, Pick, 255));
    pLuma->resize(pLuma->size() + kLumaSlack, 77);
    const int32_t nRole = Pick(0, 2);  // upper half, lower half, both
    const int32_t nY = 8 * Pick(0, s.nHeight / 8 - 1);
    KernelCase t{s.Text() + " role " + std::to_string(nRole) + " row " + std::to_string(nY),
                 BlockCount(s.nWidth, s.md),
                 {},
                 {}};
    const bool bTop = nRole != 1, bBottom = nRole != 0;
    for (int32_t n = 0; n < 2 * kHalfPlanes; ++n) {
        const bool bUpper = n < kHalfPlanes;
        if (!(bUpper ? bTop : bBottom)) continue;
        const std::string sHalf = bUpper ? "upper " : "lower ";
        t.aOutputs.push_back(Plane32(sHalf + aHalfPlaneNames[n % kHalfPlanes], t.nBlocks));
    }
    t.Call = [=, nWidth = s.nWidth, nHeight = s.nHeight, nBlocks = t.nBlocks](
                 const RowKernels& tPath, KernelOutputs* pOut) {
        const HalfRow tFirst = HalfOf(pOut->data());
        const HalfRow tSecond = bTop && bBottom ? HalfOf(pOut->data() + kHalfPlanes) : tFirst;
        tPath.pCellRowSums(*pSetup, {pLuma->data(), nWidth, nHeight}, nY, nBlocks,
                           bTop ? &tFirst : nullptr, bBottom ? &tSecond : nullptr);
    };
    return t;
}

KernelCase BlockRowRecordsCase(const Setting& s, Inputs inputs, const Picker& Pick) {
    constexpr int32_t aMax[kHalfPlanes] = {195840, 195840, 685440, 685440, 685440, 685440, 32640};
    const RecordSetup tSetup = RecordSetupOf(s.md);
    KernelCase t{s.Text() + " shifts " + std::to_string(tSetup.nShiftMetric) + " " +
                     std::to_string(tSetup.nShiftHistMag),
                 BlockCount(s.nWidth, s.md),
                 {},
                 {}};
    const auto nRoom = static_cast<size_t>(RoundToRowStep(t.nBlocks));
    const auto pSums = std::make_shared<std::vector<int32_t>>(2 * kHalfPlanes * nRoom);
    for (size_t i = 0; i < pSums->size(); ++i) {
        // Numbers of every size, since settings shift them right by 0 to 15.
        const int32_t nMax = aMax[i / nRoom % kHalfPlanes];
        const int32_t nPart = inputs == Inputs::kFullRange ? nMax >> Pick(0, 15) : nMax;
        (*pSums)[i] = Draw(inputs, Pick, nPart);
    }
    for (int32_t n = 0; n < kRecordPlanes; ++n) {
        t.aOutputs.push_back(RecordPlane("records " + std::to_string(n), t.nBlocks));
    }
    t.Call = [=, nBlocks = t.nBlocks](const RowKernels& tPath, KernelOutputs* pOut) {
        HalfRow aHalf[2] = {};
        RecordRow tOut{};
        for (size_t n = 0; n < 2 * kHalfPlanes; ++n) {
            aHalf[n / kHalfPlanes].apPlane[n % kHalfPlanes] = pSums->data() + n * nRoom;
        }
        for (size_t n = 0; n < kRecordPlanes; ++n) tOut.apPlane[n] = (*pOut)[n].At<uint8_t>();
        tPath.pBlockRowRecords(tSetup, aHalf[0], aHalf[1], nBlocks, tOut);
    };
    return t;
}

KernelCase RowDistancesCase(const Setting& s, Inputs inputs, const Picker& Pick) {
    const DistanceSetup tSetup = DistanceSetupOf(s.md);
    KernelCase t{s.Text() + " scale " + std::to_string(tSetup.nScale) + " one-sided " +
                     std::to_string(tSetup.bWeightOneSided),
                 BlockCount(s.nWidth, s.md),
                 {},
                 {}};
    const auto nPlane = size_t{4} * static_cast<size_t>(RoundToRowStep(t.nBlocks));
    const auto pRecords = std::make_shared<Plane>(2 * kRecordPlanes * nPlane);
    for (uint8_t& n : *pRecords) n = static_cast<uint8_t>(Draw(inputs, Pick, 255));
    t.aOutputs = {Plane8("distance", t.nBlocks), Plane8("luma difference", t.nBlocks)};
    t.Call = [=, nBlocks = t.nBlocks](const RowKernels& tPath, KernelOutputs* pOut) {
        RecordRow aRow[2] = {};
        for (size_t n = 0; n < 2 * kRecordPlanes; ++n) {
            aRow[n / kRecordPlanes].apPlane[n % kRecordPlanes] = pRecords->data() + n * nPlane;
        }
        tPath.pRowDistances(tSetup, aRow[0], aRow[1], nBlocks, (*pOut)[0].At<uint8_t>(),
                            (*pOut)[1].At<uint8_t>());
    };
    return t;
}

}  // namespace

const KernelRow kRowKernels[3] = {{"CellRowSums", CellRowSumsCase},
                                  {"BlockRowRecords", BlockRowRecordsCase},
                                  {"RowDistances", RowDistancesCase}};

KernelOutputs Outputs(const KernelCase& tCase, const RowKernels& tPath, uint8_t nJunk) {
    KernelOutputs aOut = tCase.aOutputs;
    for (KernelOutput& t : aOut) t.aBytes.assign(t.nRoom + 2 * KernelOutput::kGuard, nJunk);
    tCase.Call(tPath, &aOut);
    return aOut;
}

std::string Difference(const KernelCase& tCase, const KernelOutputs& aExpected,
                       const KernelOutputs& aGot, uint8_t nJunk) {
    for (size_t k = 0; k < aGot.size(); ++k) {
        const KernelOutput& t = aGot[k];
        for (size_t n = 0; n < t.aBytes.size(); ++n) {
            const size_t nByte = n - KernelOutput::kGuard;  // wraps before the room
            const bool bRoom = n >= KernelOutput::kGuard && nByte < t.nRoom;
            const int32_t nBlock = bRoom ? t.BlockOf(nByte) : -1;
            if (bRoom && nBlock >= tCase.nBlocks) continue;
            const uint8_t nWant = bRoom ? aExpected[k].aBytes[n] : nJunk;
            if (t.aBytes[n] == nWant) continue;
            return t.sName + (bRoom ? ", block " + std::to_string(nBlock) : ", guard") + ", byte " +
                   std::to_string(static_cast<ptrdiff_t>(nByte)) + ": " + std::to_string(nWant) +
                   " expected, got " + std::to_string(t.aBytes[n]);
        }
    }
    return "";
}
