// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The template of a page (made by build.js) and the marks in it that a writer fills: title,
// verdict, header and data, <!--md:title--> and so on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lab {

// The pieces of a template between its marks.
struct PageTemplate {
    std::string before_title, before_verdict, before_header, before_data, after_data;
    [[nodiscard]] int64_t Size() const;
};

// Throws Error if a mark is missing, doubled or out of order.
PageTemplate CutTemplate(std::string_view page);

}  // namespace lab
