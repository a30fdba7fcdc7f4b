// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/page_file.h"

#include "lab/page/pack.h"
#include "lab/report/spool.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

std::string Open(const std::string& type, const std::string& id) {
    return "<script type=\"" + type + "\" id=\"" + id + "\">";
}

constexpr std::string_view kClose = "</script>\n";

std::string OpenData(const DataBlock& block) {
    return Open("text/plain", block.id);
}

}  // namespace

std::string JsonForPage(const nlohmann::json& json) {
    const std::string text = json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    std::string out;
    for (const char c : text) {
        if (c == '<') {
            out += "\\u003c";
        } else {
            out += c;
        }
    }
    return out;
}

int64_t PageSize(const PageTemplate& page, const PageTexts& texts,
                 const std::vector<DataBlock>& blocks) {
    int64_t size =
        page.Size() +
        static_cast<int64_t>(2 * texts.verdict.size() + texts.header.size() + texts.head.size() +
                             Open("application/json", "md-head").size() + kClose.size());
    for (const DataBlock& block : blocks) {
        size +=
            static_cast<int64_t>(OpenData(block).size() + kClose.size()) + Base64Size(block.size);
    }
    return size;
}

void WritePage(const PageTemplate& page, const PageTexts& texts,
               const std::vector<DataBlock>& blocks, const InterruptGuard& interrupt,
               ResultFile* file) {
    for (const std::string* text :
         {&page.before_title, &texts.verdict, &page.before_verdict, &texts.verdict,
          &page.before_header, &texts.header, &page.before_data}) {
        file->Write(*text);
    }
    file->Write(Open("application/json", "md-head"));
    file->Write(texts.head);
    file->Write(kClose);
    for (const DataBlock& block : blocks) {
        interrupt.Check();
        file->Write(OpenData(block));
        file->Write(Base64(SpoolReader(block.path).Read(block.record)));
        file->Write(kClose);
    }
    file->Write(page.after_data);
}

}  // namespace lab
