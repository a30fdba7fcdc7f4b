// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Features and decisions of the slow twin. All features of a frame come first and all decisions
// after them; each threshold is summed anew from its definition.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/twin/twin_state.h"

namespace {

constexpr int B = 16;  // block edge, pixels

// Luma at (c, r) of the block with its corner at (x0, y0); c and r run from -2 to 17.
int Luma(const TwinState& t, int x0, int y0, int c, int r) {
    const int nInC = std::clamp(c, 0, B - 1), nInR = std::clamp(r, 0, B - 1);
    if (t.p.nMD_Padding_Method == 1 && (c != nInC || r != nInR)) return 0;
    const bool bOwnEdge = t.p.nMD_Padding_Method == 2;
    const int x = bOwnEdge ? x0 + nInC : std::clamp(x0 + c, 0, t.W - 1);
    const int y = bOwnEdge ? y0 + nInR : std::clamp(y0 + r, 0, t.H - 1);
    return uint8_t(t.sFrame[size_t(y * t.W + x)]);
}

int Weight(int x, int y) {
    static const auto aWeights = [] {
        std::array<int, B * B> a{};
        for (int i = 0; i < B * B; ++i) {
            const int dx = i % B < 8 ? 7 - i % B : i % B - 8, dy = i < 128 ? 7 - i / B : i / B - 8;
            a[size_t(i)] = int(64 * std::exp(-(dx * dx + dy * dy) / 18.0) + 0.5);
        }
        return a;
    }();
    return aWeights[size_t(y * B + x)];
}

int Magnitude(const TwinState& t, int x0, int y0, int x, int y) {
    int gx = 0, gy = 0;
    for (int k = 0; k < kGradientTaps; ++k) {
        gx += Luma(t, x0, y0, x + k - 2, y) * t.p.nMD_HogGradX[k];
        gy += Luma(t, x0, y0, x, y + k - 2) * t.p.nMD_HogGradY[k];
    }
    const int ax = std::abs(gx), ay = std::abs(gy);
    const int nMag = std::max(ax, ay) + std::min(ax, ay) / 2;
    return t.p.nMD_HogMagnitudeWeightEn != 0 ? nMag * Weight(x, y) / 64 : nMag;
}

// 65536 / sqrt(n), cut to whole numbers; n from 1 to below 2^20. In the chip n is first scaled by
// fours to 16 significant bits, and a root of 2^16 itself does not fit: it comes out one less.
uint32_t InverseRoot(uint32_t n) {
    int e = 7;
    uint64_t m = n;
    for (; m < 16384; m *= 4) --e;
    for (; m >= 65536; m /= 4) ++e;
    auto nRoot = static_cast<uint64_t>(std::sqrt(std::ldexp(1.0, 46) / double(m)));
    while (nRoot * nRoot * m > uint64_t{1} << 46) --nRoot;
    nRoot = std::min<uint64_t>(nRoot, 65535);
    return static_cast<uint32_t>(nRoot >> e);
}

void Normalise(const TwinState& t, TwinFeature& f) {
    uint32_t nSumSq = 1;
    for (const int v : f.v) nSumSq += uint32_t(v * v);
    const uint32_t nRoot = InverseRoot(nSumSq);
    const int nLength = nSumSq == 1 ? 1 : int((nRoot * nSumSq) >> 16);
    for (int& v : f.v) v = std::min(int((uint32_t(v) * nRoot) >> 8), 255);
    const int nShift = t.p.nMD_ShiftHistMag2 - 3;
    const int h = nShift > 0 ? nLength >> nShift : nLength << -nShift;
    f.nNorm2 = std::clamp(h, 1, 255);
}

TwinFeature FeatureOf(const TwinState& t, int x0, int y0) {
    TwinFeature f;
    int aMag[B][B], nSum = 0;
    for (int y = 0; y < B; ++y) {
        for (int x = 0; x < B; ++x) {
            nSum += Luma(t, x0, y0, x, y);
            aMag[y][x] = Magnitude(t, x0, y0, x, y);
        }
    }
    f.nAvgY = (nSum + 128) / 256;
    if ((t.p.nMD_MetricMode & kMetricMog) == 0) return f;
    for (int i = 0; i < 10; ++i) {
        const bool bCell = i < 8, bAlongX = i < 4 || i == 8;
        const int nSide = bCell ? 8 : B, cx = bCell ? i % 2 * 8 : 0, cy = bCell ? i / 2 % 2 * 8 : 0;
        int nMoment = 0;
        for (int y = 0; y < nSide; ++y) {
            for (int x = 0; x < nSide; ++x) nMoment += aMag[cy + y][cx + x] * (bAlongX ? x : y);
        }
        nMoment >>= t.p.nMD_ShiftMetric2_Th + (bCell ? 0 : 2);
        f.v[size_t(i)] = std::min(nMoment, 255);
    }
    if (t.p.nMD_HogNormalizeMode != 0) Normalise(t, f);
    return f;
}

// A block's neighbourhood as the decision sees it.
struct Around {
    int nActive = 0, nLater = 0, nHigh = 0;             // flags set, the block's own among them
    int dUp = 0, dLeft = 0, dUpLeft = 0, dUpRight = 0;  // this frame's distances
    bool bInside = false;                               // no neighbour is missing
};

Around LookAround(const TwinState& t, int i) {
    Around a;
    int nSeen = 0;
    const auto Look = [&](int dx, int dy) {
        const int x = i % t.nCols + dx, y = i / t.nCols + dy;
        if (x < 0 || y < 0 || x >= t.nCols || y >= t.nRows) return 0;
        const TwinHistory& h = t.aHistory[size_t(y * t.nCols + x)];
        ++nSeen;
        a.nActive += h.bActive;
        a.nHigh += h.bHigh;
        a.nLater += h.bActive && (dy > 0 || (dy == 0 && dx >= 0));
        return h.aDist[size_t(t.nFrame % 3)];
    };
    a.dUpLeft = Look(-1, -1);
    a.dUp = Look(0, -1);
    a.dUpRight = Look(1, -1);
    a.dLeft = Look(-1, 0);
    for (const int dx : {0, 1}) Look(dx, 0);
    for (const int dx : {-1, 0, 1}) Look(dx, 1);
    a.bInside = nSeen == 9;
    return a;
}

struct Thresholds {
    int nBase, nAlone, nHigh, nLow;
};

// Over threshold: the avail value 0, 1 or 2; may set the count back.
int OverThreshold(const TwinState& t, TwinHistory& h, const Around& a, const Thresholds& th) {
    const MdParams& p = t.p;
    const auto Back = [&](int n) { return h.aDist[size_t((t.nFrame + 3 - n) % 3)]; };
    const bool bNear = a.nActive >= p.nMD_HogDist_Th_LowDelay_nn_count;
    const bool bLater = a.nLater >= p.nMD_HogDist_Th_LowDelay_prev_nn_count;
    const bool bFresh = Back(0) > th.nLow && Back(2) < th.nBase;
    if (p.nMD_LowDelayEn != 0 && h.nCnt == 1) {
        return bNear && bFresh && Back(1) < th.nBase ? 2 : 0;
    }
    if (p.nMD_LowDelayEn != 0 && h.nCnt == 2) {
        return (bLater || bNear) && bFresh && Back(1) > th.nLow ? 2 : 0;
    }
    if (h.nCnt < p.nMD_ActBlkRepeatFrmCntTh) return 0;
    const int nMax = *std::max_element(h.aDist.begin(), h.aDist.end());
    const int nMin = *std::min_element(h.aDist.begin(), h.aDist.end());
    if (nMax <= nMin * (p.nMD_ActBlk_MinMaxRatio_Scale + 16) / 16) return 1;
    const int nBack = a.nActive == 0 ? 3 : a.nActive == 1 ? 2 : 1;
    h.nCnt = std::max(p.nMD_ActBlkRepeatFrmCntTh - nBack, 0);
    return a.nActive >= 4 ? 1 : 0;
}

// The decision from history and neighbours: updates the block's record, gives its avail value.
bool Correlate(const TwinState& t, TwinHistory& h, const Around& a, int nYDiffThre, int D) {
    const MdParams& p = t.p;
    Thresholds th{};
    th.nBase = std::max(p.nMD_HogDist_Th, nYDiffThre * p.nMD_HogDist_Th_AvgYDiffAdj_Scale / 8);
    th.nBase = std::min(th.nBase, 255);
    th.nAlone = std::min(th.nBase * p.nMD_HogDist_Th_nnAdj_Scale / 4, 255);
    th.nHigh = std::min(th.nBase * (p.nMD_HogDist_Th_highActiveAdj_scale + 4) / 4, 255);
    th.nLow = (th.nAlone * 2) >> p.nMD_HogDist_Th_LowDelay_shift;
    const int nUp = std::max({a.dUpLeft, a.dUp, a.dUpRight});
    const bool bPatch = D == 255 && a.dUpLeft == 255 && a.dUp == 255 && a.dLeft == 255;
    const bool bEdge = D == 255 && nUp == 0 && a.dLeft >= 180;
    const bool bStrong = D >= 170 && nUp <= 2 && a.dLeft >= 200;
    const int nUpOne = std::min(h.nCnt + 1, 15);
    int nAvail = 0;
    if (a.bInside && (bPatch || bEdge || bStrong)) {
        nAvail = 2;
        h.nCnt = nUpOne;
    } else if (a.nHigh > 0 && D > th.nBase / 16) {
        nAvail = 1;
    } else if (D <= (a.nActive == 0 ? th.nAlone : th.nBase)) {
        h.nCnt = std::max(h.nCnt - 1, 0);
    } else {
        h.nCnt = nUpOne;
        nAvail = OverThreshold(t, h, a, th);
    }
    h.bActive = nAvail == 1;
    h.bHigh = nAvail == 1 && D >= th.nHigh;
    const bool bIsolated = nAvail == 1 && a.nHigh == 0 && a.nActive < p.nMD_ActNeighborBlkCntTh;
    return nAvail != 0 && !bIsolated;
}

void Decide(TwinState& t, int i, int nYDiffThre) {
    const MdParams& p = t.p;
    const TwinFeature &c = t.Cur(i), &r = t.Ref(i);
    TwinHistory& h = t.aHistory[size_t(i)];
    const bool bDetail = (p.nDbgEn & kDbgDetail) != 0, bCorrelate = p.nMD_NeighborCorrelation != 0;
    if (bDetail) {
        Put(t.sOut, "BlockHogDistance_NormalHog:   nMD_HogNormalizeMode=%d, iCurBlkVar=1, ",
            p.nMD_HogNormalizeMode);
        Put(t.sOut, "iRefBlkVar=1, iCurBlkY=%d, iRefBlkY=%d, nYDiffThre=%d\n", c.nAvgY, r.nAvgY,
            nYDiffThre);
    }
    const bool bStill = p.nMD_HogDistAvailCheck == 1 && std::abs(c.nAvgY - r.nAvgY) <= nYDiffThre;
    const bool bNotAvail = t.nFrame == 0 || bStill;
    t.aAvail[size_t(i)] = t.aDist[size_t(i)] = 0;
    if (!bCorrelate && bNotAvail) return;

    // Vectors of length 256 at most keep the product of squares, weight and scale below 2^31.
    int nAccu = 0, nDist = 0;
    const int nRise = p.nMD_HogDist_WeightMethod == 0 ? std::abs(c.nNorm2 - r.nNorm2)
                                                      : std::max(c.nNorm2 - r.nNorm2, 0);
    const int nWeight = c.nNorm2 + nRise;
    if ((p.nMD_MetricMode & kMetricMog) != 0) {
        for (size_t k = 0; k < 10; ++k) nAccu += (c.v[k] - r.v[k]) * (c.v[k] - r.v[k]);
        nAccu >>= p.nMD_HogCellSize == B ? 4 : 6;
        nDist = nAccu * nWeight * p.nMD_HogDist_Scale2 >> (p.nMD_HogNormalizeMode == 0 ? 4 : 12);
    }
    const int D = std::min(nDist, 255);
    const Around a = LookAround(t, i);
    if (bCorrelate) h.aDist[size_t(t.nFrame % 3)] = D;
    if (bNotAvail) {
        h.bActive = h.bHigh = false;
        return;
    }
    t.aDist[size_t(i)] = D;
    t.aAvail[size_t(i)] = !bCorrelate || Correlate(t, h, a, nYDiffThre, D);
    if (!bDetail) return;
    Put(t.sOut, "  iAccuDist=%d, DistWeight2=%d, iHOGDist=%d.\n", nAccu, nWeight, D);
    t.sOut += "  Histogram of cur blk: \n  Histogram of ref blk: \n";
}

// Scaled mean of the luma differences of the first n blocks.
int MeanThreshold(const TwinState& t, int n) {
    int nSum = 0;
    for (int i = 0; i < n; ++i) nSum += std::abs(t.Cur(i).nAvgY - t.Ref(i).nAvgY);
    return ((nSum / n) * t.p.nMD_HogDist_AvgYDiffThre_Scale) >> 4;
}

}  // namespace

void TwinScan(TwinState& t) {
    for (int i = 0; i < t.nBlks; ++i) {
        t.aPool[t.nCurSlot][size_t(i)] = FeatureOf(t, t.X(i), t.Y(i));
    }
    const int nMethod = t.p.nMD_HogDist_AvgYDiffCalc_Method;
    int nThre = t.nCarry;
    for (int i = 0; i < t.nBlks; ++i) {
        const bool bNewRow = i % t.nCols == 0;
        if (nMethod == 0 && bNewRow) nThre = MeanThreshold(t, i + t.nCols);
        if (nMethod == 1) nThre = MeanThreshold(t, i + 1);
        if (nMethod == 0 && i == t.nBlks - t.nCols) {
            Put(t.sOut, "blockLine=%d, nYDiffThreLine = %d\n", t.nRows - 1, nThre);
        }
        Decide(t, i, nThre);
    }
    if (nMethod == 2) t.nCarry = MeanThreshold(t, t.nBlks);
}
