// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The report file: the template of the page with its marks replaced (FORMAT.md, sections 1 and 3).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lab/page/template.h"
#include "lab/report/chunks.h"
#include "lab/tool/result_file.h"

namespace lab {

// Texts that the writer puts in; all of them html.
struct PageTexts {
    std::string verdict;  // escaped
    std::string header;
    std::string head;  // json; every '<' is written as \u003c here
};

// A data block: a record of a spool that becomes an element of the page.
struct DataBlock {
    std::string id;
    std::string path;  // of the spool
    size_t record = 0;
    int64_t size = 0;  // bytes of the record
};

// Bytes of the whole file.
int64_t PageSize(const PageTemplate& page, const PageTexts& texts,
                 const std::vector<DataBlock>& blocks);

// Writes all of it; committing is the caller's.
void WritePage(const PageTemplate& page, const PageTexts& texts,
               const std::vector<DataBlock>& blocks, const InterruptGuard& interrupt,
               ResultFile* file);

// The json as the page holds it.
std::string JsonForPage(const nlohmann::json& json);

}  // namespace lab
