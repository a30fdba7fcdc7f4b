// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/lab/report/page_reader.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>

#include "tests/support/files.h"

const std::string kStubPage =
    "<!doctype html><title><!--md:title--></title><noscript><!--md:verdict--></noscript>"
    "<header><!--md:header--></header>\n<!--md:data--><p>end</p>";

namespace {

std::string Inflate(const std::string& packed) {
    z_stream stream{};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string out;
    char buffer[1 << 16];
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(buffer, sizeof buffer - stream.avail_out);
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END) throw std::runtime_error("a block does not inflate");
    return out;
}

std::string Unbase64(const std::string& text) {
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == '=') break;
        const size_t value = digits.find(c);
        if (value == std::string::npos) throw std::runtime_error("not base64");
        bits = bits << 6 | static_cast<uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            out += static_cast<char>(bits >> count);
        }
    }
    return out;
}

std::string Between(const std::string& text, const std::string& open, const std::string& close) {
    const size_t at = text.find(open);
    const size_t end = at == std::string::npos ? at : text.find(close, at + open.size());
    if (end == std::string::npos) throw std::runtime_error("no " + open);
    return text.substr(at + open.size(), end - at - open.size());
}

class Cursor {
  public:
    explicit Cursor(const std::string& text) : text_(text) {}
    int Byte() {
        if (at_ >= text_.size()) throw std::runtime_error("a chunk ends early");
        return static_cast<uint8_t>(text_[at_++]);
    }
    uint32_t Varint() {
        uint32_t value = 0;
        int byte = 128;
        for (int shift = 0; byte >= 128; shift += 7) {
            byte = Byte();
            value |= static_cast<uint32_t>(byte & 127) << shift;
        }
        return value;
    }
    [[nodiscard]] bool AtEnd() const { return at_ == text_.size(); }

  private:
    const std::string& text_;
    size_t at_ = 0;
};

void ReadBlocks(Cursor* in, size_t blocks, size_t thresholds, PageFrame* frame) {
    const int ordinary = in->Byte();
    if (ordinary == 255) return;
    frame->has_blocks = true;
    int last = 0;
    for (size_t i = 0; i < thresholds; ++i) {
        const uint32_t zigzag = in->Varint();
        last += zigzag % 2 == 0 ? static_cast<int>(zigzag / 2) : -static_cast<int>(zigzag / 2) - 1;
        frame->thresholds.push_back(last);
    }
    while (frame->outcome.size() < blocks) {
        for (uint32_t skip = in->Varint(); skip > 0; --skip) {
            frame->distance.push_back(0);
            frame->state.push_back(0);
            frame->outcome.push_back(ordinary);
        }
        for (uint32_t live = in->Varint(); live > 0; --live) {
            frame->distance.push_back(in->Byte());
            frame->state.push_back(in->Byte());
            frame->outcome.push_back(in->Byte());
        }
    }
    if (frame->outcome.size() != blocks) throw std::runtime_error("runs do not fit the grid");
}

// The frames of one chunk: the first, and the one after the last.
struct Span {
    size_t first, end;
};

void ReadVectors(const std::string& chunk, Span span, size_t blocks, size_t planes,
                 std::vector<PageFrame>* frames) {
    Cursor in(chunk);
    std::vector<std::pair<size_t, int>> stored;
    for (size_t f = span.first; f < span.end; ++f) {
        for (size_t byte = 0; byte < (blocks + 7) / 8; ++byte) {
            const int bits = in.Byte();
            for (int k = 0; k < 8; ++k) {
                if ((bits >> k & 1) != 0) stored.emplace_back(f, static_cast<int>(byte) * 8 + k);
            }
        }
    }
    for (size_t p = 0; p < planes; ++p) {
        for (const auto& [f, block] : stored) (*frames)[f].vectors[block].push_back(in.Byte());
    }
    if (!in.AtEnd()) throw std::runtime_error("vectors are too long");
}

}  // namespace

std::vector<PageFrame> Page::Frames(int run) const {
    const auto& about = head["runs"].at(static_cast<size_t>(run));
    const size_t count = head["clip"]["frames"];
    const size_t chunk_frames = head["chunk_frames"];
    const size_t grid = about["grid"]["w"].get<size_t>() * about["grid"]["h"].get<size_t>();
    const auto Find = [&](char letter, int of, size_t k) -> const std::string* {
        std::string id = "md-";
        id.append(1, letter).append(std::to_string(of));
        if (letter != 'f') id.append("-").append(std::to_string(k));
        const auto at = blocks.find(id);
        return at == blocks.end() ? nullptr : &at->second;
    };
    std::vector<PageFrame> frames(count);
    const std::string& table = *Find('f', run, 0);
    size_t at = 0;
    for (const auto& name : about["columns"]) {
        for (PageFrame& frame : frames) {
            uint32_t value = 0;
            for (int k = 3; k >= 0; --k) {
                value = value << 8 | static_cast<uint8_t>(table.at(at + static_cast<size_t>(k)));
            }
            frame.columns[name] = static_cast<int>(value);
            at += 4;
        }
    }
    if (at != table.size()) throw std::runtime_error("the frame table does not fit");
    for (size_t k = 0; k * chunk_frames < count; ++k) {
        const Span span{k * chunk_frames, std::min((k + 1) * chunk_frames, count)};
        if (const std::string* chunk = Find('b', run, k)) {
            Cursor in(*chunk);
            for (size_t f = span.first; f < span.end; ++f) {
                ReadBlocks(&in, grid, about["thresholds"], &frames[f]);
            }
            if (!in.AtEnd()) throw std::runtime_error("blocks are too long");
        }
        const auto Bytes = [&](const std::string& chunk, std::vector<int> PageFrame::*member,
                               bool differences) {
            Cursor in(chunk);
            for (size_t f = span.first; f < span.end; ++f) {
                for (size_t i = 0; i < grid; ++i) {
                    const int before =
                        differences && f > span.first ? (frames[f - 1].*member)[i] : 0;
                    (frames[f].*member).push_back((in.Byte() + before) & 255);
                }
            }
            if (!in.AtEnd()) throw std::runtime_error("a plane is too long");
        };
        if (!about["luma_of"].is_null()) {
            const std::string* chunk = Find('l', about["luma_of"], k);
            if (chunk != nullptr) Bytes(*chunk, &PageFrame::luma, true);
        }
        if (const std::string* chunk = Find('r', run, k)) {
            Bytes(*chunk, &PageFrame::cases, false);
        }
        if (!about["vectors_of"].is_null()) {
            const std::string* chunk = Find('v', about["vectors_of"], k);
            if (chunk != nullptr) {
                ReadVectors(*chunk, span, grid, about["weights"].get<bool>() ? 11 : 10, &frames);
            }
        }
    }
    return frames;
}

Page ReadPage(const std::string& path) {
    const std::string text = ReadAll(path);
    Page page;
    page.title = Between(text, "<title>", "</title>");
    page.verdict = Between(text, "<noscript>", "</noscript>");
    page.header = Between(text, "<header>", "</header>");
    if (!text.ends_with("<p>end</p>")) throw std::runtime_error("the template's end is missing");
    const std::string head =
        Between(text, "<script type=\"application/json\" id=\"md-head\">", "<");
    page.head = nlohmann::json::parse(head);
    const std::string open = "<script type=\"text/plain\" id=\"";
    for (size_t at = 0; (at = text.find(open, at)) != std::string::npos;) {
        at += open.size();
        const std::string id = text.substr(at, text.find('"', at) - at);
        const size_t start = text.find('>', at) + 1;
        const std::string data = Unbase64(text.substr(start, text.find('<', start) - start));
        page.blocks[id] = id == "md-video" ? data : Inflate(data);
    }
    return page;
}
