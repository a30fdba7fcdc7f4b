// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/page/template.h"

#include <array>

#include "lab/tool/error.h"

namespace lab {

namespace {

constexpr std::array<std::string_view, 4> kMarks = {"<!--md:title-->", "<!--md:verdict-->",
                                                    "<!--md:header-->", "<!--md:data-->"};

}  // namespace

int64_t PageTemplate::Size() const {
    return static_cast<int64_t>(before_title.size() + before_verdict.size() + before_header.size() +
                                before_data.size() + after_data.size());
}

PageTemplate CutTemplate(std::string_view page) {
    std::array<std::string, kMarks.size() + 1> pieces;
    for (size_t i = 0; i < kMarks.size(); ++i) {
        const size_t at = page.find(kMarks[i]);
        if (at == std::string_view::npos ||
            page.find(kMarks[i], at + 1) != std::string_view::npos) {
            throw Error("internal error: the page's template has not one mark " +
                        std::string(kMarks[i]));
        }
        pieces[i] = page.substr(0, at);
        page.remove_prefix(at + kMarks[i].size());
    }
    pieces.back() = page;
    return {pieces[0], pieces[1], pieces[2], pieces[3], pieces[4]};
}

}  // namespace lab
