// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Configuration text with command-line overrides. An input is cut at bytes of 0x1F: the default
// file, the file that the argument "@" names, then one argument each.
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "md/cfg_top/chip_limits.h"
#include "md/cfg_top/configure.h"
#include "md/cfg_top/input_map.h"
#include "md/run_state.h"
#include "tests/fuzz/exit_trap.h"

namespace {

// A file in memory with a path, rewritten for every input.
struct MemoryFile {
    int nFile = memfd_create("cfg", 0);
    std::string sPath = "/proc/self/fd/" + std::to_string(nFile);

    void Write(const std::string& s) const {
        Require(ftruncate(nFile, 0) == 0 && pwrite(nFile, s.data(), s.size(), 0) >= 0, "a file");
    }
};

// What a stage after the configuration may rely on.
void RequireLimits() {
    for (const InputMapEntry* p = aInputMap.data(); std::strcmp(p->TokenName, "END") != 0; ++p) {
        if (p->Type == kTypeString) {
            Require(std::memchr(p->Place, 0, kPathSize) != nullptr, "an end mark");
            continue;
        }
        const double d = p->Type == kTypeInteger ? *static_cast<const int32_t*>(p->Place)
                                                 : *static_cast<const double*>(p->Place);
        Require(p->LimitKind == kLimitNone || !(d < p->MinLimit), "the lower bound");
        Require(p->LimitKind != kLimitBoth || !(d > p->MaxLimit), "the upper bound");
    }
    Require(tSimParams.tMd.nMD_RefFrmIdx < kPoolSlots, "a slot of the pool");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nData) {
    static const MemoryFile tDefault, tOther;
    std::vector<std::string> aPieces(1);
    for (size_t i = 0; i < nData; ++i) {
        if (pData[i] == 0x1F) {
            aPieces.emplace_back();
        } else {
            aPieces.back() += static_cast<char>(pData[i]);
        }
    }
    aPieces.resize(std::max<size_t>(aPieces.size(), 2));
    tDefault.Write(aPieces[0]);
    tOther.Write(aPieces[1]);
    std::vector<std::string> aTexts = {"MD", "-d", tDefault.sPath};
    for (size_t i = 2; i < aPieces.size(); ++i) {
        aTexts.push_back(aPieces[i] == "@" ? tOther.sPath : aPieces[i]);
    }
    std::vector<char*> argv;
    for (std::string& s : aTexts) argv.push_back(s.data());
    const int nStatus = RunTrapped([&] {
        CfgArguments tArguments{static_cast<int32_t>(argv.size()), argv.data()};
        CfgResult tResult{};
        cfgConfigure(&tArguments, &tResult);
        MdCheckChipLimits();
        cfgCompletePath(tResult.szCfgDir, tSimParams.InputFilePath);
        cfgCompletePath(tResult.szCfgDir, tSimParams.OutputFilePath);
    });
    RequireKnownStatus(nStatus);
    if (nStatus == kCameBack) RequireLimits();
    return 0;
}
