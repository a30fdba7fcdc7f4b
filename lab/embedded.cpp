// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/embedded.h"

// The assembler reads the file; names end in "_end" for its end.
// NOLINTBEGIN(bugprone-macro-parentheses): what is joined is one text
#define EMBED(name, path)                                            \
    asm(".section .rodata\n" #name ":\n.incbin \"" path "\"\n" #name \
        "_end:\n.byte 0\n.previous\n");                              \
    extern "C" const char name[];                                    \
    extern "C" const char name##_end[]
// NOLINTEND(bugprone-macro-parentheses)

EMBED(mdlab_default_cfg, MDLAB_DEFAULT_CFG);
#ifdef MDLAB_REPORT_PAGE
EMBED(mdlab_report_page, MDLAB_REPORT_PAGE);
EMBED(mdlab_sweep_page, MDLAB_SWEEP_PAGE);
#endif

namespace lab {

std::string_view DefaultCfg() {
    return {mdlab_default_cfg, static_cast<size_t>(mdlab_default_cfg_end - mdlab_default_cfg)};
}

std::string_view ReportPage() {
#ifdef MDLAB_REPORT_PAGE
    return {mdlab_report_page, static_cast<size_t>(mdlab_report_page_end - mdlab_report_page)};
#else
    return {};
#endif
}

std::string_view SweepPage() {
#ifdef MDLAB_REPORT_PAGE
    return {mdlab_sweep_page, static_cast<size_t>(mdlab_sweep_page_end - mdlab_sweep_page)};
#else
    return {};
#endif
}

}  // namespace lab
