// The kernels of cell_sums.h, built for AVX2.
#ifdef __AVX2__
#include "md/feature/block_row_kernel.h"
#include "md/feature/cell_row_kernel.h"

void CellRowSums_Avx2(const CellSetup* pSetup, const uint8_t* pY, int32_t nWidth, int32_t nHeight,
                      int32_t nY, int32_t nBlocks, HalfBlock* pTop, HalfBlock* pBottom) {
    CellRowSums(pSetup, pY, nWidth, nHeight, nY, nBlocks, pTop, pBottom);
}

void BlockRowFeatures_Avx2(const CellSetup* pSetup, const HalfBlock* pTop, const HalfBlock* pBottom,
                           int32_t nBlocks, BlockSignature* pCur, const BlockSignature* pRef,
                           uint8_t* pDist, uint8_t* pYDiff) {
    BlockRowFeatures(pSetup, pTop, pBottom, nBlocks, pCur, pRef, pDist, pYDiff);
}
#endif
