// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/input_types.h"

#include <algorithm>
#include <iterator>

#include "md/input/raw_files.h"
#include "md/input/tool_commands.h"
#include "md/platform/platform.h"
#include "md/platform/run_tool.h"
#include "md/run_state.h"

namespace {

void ConvertVideo(const char* szOutput) {
    PrintAndRun("%sffmpeg %s -i %s -c:v rawvideo -pix_fmt yuv420p %s", InFolder(pToolDir).c_str(),
                szToolFlags, CommandWord(tSimParams.InputFilePath).c_str(),
                CommandWord(szOutput).c_str());
}

void ConvertLuma(const char* szOutput) {
    const SimParams& sim = tSimParams;
    YuvI400ToI420(sim.InputFilePath, sim.nInputWidth, sim.nInputHeight, szOutput);
}

void Convert422(const char* szOutput) {
    const SimParams& sim = tSimParams;
    PrintAndRun(
        "%sffmpeg %s -f rawvideo -pix_fmt yuv422p -s:v %dx%d -i %s "
        "-c:v rawvideo -pix_fmt yuv420p %s",
        InFolder(pToolDir).c_str(), szToolFlags, sim.nInputWidth, sim.nInputHeight,
        CommandWord(sim.InputFilePath).c_str(), CommandWord(szOutput).c_str());
}

constexpr InputTypeRow aRows[] = {
    // clang-format off
    //          mark              size   tool   convert
    {kRaw420,   "_P420", "_p420", false, false, nullptr},
    {kRaw422,   "_P422", "_p422", false, true,  Convert422},
    {kRawLuma,  "_P400", "_p400", false, false, ConvertLuma},
    {kAnyVideo, nullptr, nullptr, true,  true,  ConvertVideo},
    // clang-format on
};
static_assert(std::size(aRows) == kInputTypes);

}  // namespace

const std::span<const InputTypeRow> aInputTypes(aRows);

const InputTypeRow& InputTypeOf(int32_t nType) {
    return *std::ranges::find(aRows, nType, &InputTypeRow::nType);
}
