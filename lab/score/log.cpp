// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/log.h"

#include <array>
#include <charconv>

namespace lab {

namespace {

// The first numbers of a text, whatever is between them; false if there are fewer.
template <size_t N>
bool Numbers(std::string_view text, std::array<int32_t, N>* numbers) {
    for (int32_t& number : *numbers) {
        const size_t from = text.find_first_of("0123456789");
        if (from == std::string_view::npos) return false;
        text.remove_prefix(from);
        const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (fault != std::errc{}) return false;
        text.remove_prefix(static_cast<size_t>(end - text.data()));
    }
    return true;
}

// From the command that scales: "-s:v WxH ... scale="WxH"", the colon of a filter in between.
std::optional<Scaling> ScalingOf(std::string_view command) {
    constexpr std::string_view kInput = "-s:v ";
    constexpr std::string_view kWorking = "-vf scale=\"";
    const size_t input = command.find(kInput);
    const size_t working = command.rfind(kWorking);
    if (input == std::string_view::npos || working == std::string_view::npos) return std::nullopt;
    std::array<int32_t, 2> from{};
    std::array<int32_t, 2> to{};
    if (!Numbers(command.substr(input + kInput.size()), &from)) return std::nullopt;
    if (!Numbers(command.substr(working + kWorking.size()), &to)) return std::nullopt;
    return Scaling{{from[0], from[1]}, {to[0], to[1]}};
}

bool IsComplaint(std::string_view line) {
    for (const std::string_view start :
         {"ERROR", "[ERROR]", "Error", " Parsing error", "Parsing error", "Parameter error",
          "NormalHogParam error", "open input"}) {
        if (line.starts_with(start)) return true;
    }
    return false;
}

}  // namespace

void LogReader::Add(std::string_view piece) {
    for (size_t end = 0; (end = piece.find('\n')) != std::string_view::npos;) {
        if (rest_.empty()) {
            Line(piece.substr(0, end));
        } else {
            rest_.append(piece.substr(0, end));
            Line(rest_);
            rest_.clear();
        }
        piece.remove_prefix(end + 1);
    }
    rest_.append(piece);
}

void LogReader::Finish() {
    if (!rest_.empty()) Line(rest_);
    rest_.clear();
}

void LogReader::Line(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.starts_with("*****frame ")) {
        std::array<int32_t, 1> number{};
        frame_ = Numbers(line, &number) ? number[0] : -1;
        detected_ = false;
    } else if (line.starts_with("MotionDetected=")) {
        detected_ = line.substr(15).starts_with('1');
    } else if (line.starts_with("PP_V2: ")) {
        std::array<int32_t, 4> edges{};  // left, right, top, bottom
        if (frame_ < 0 || !Numbers(line.substr(7), &edges)) return;
        FrameReport report{frame_, std::nullopt};
        // A box that the gate holds back is printed as four zeros.
        if (detected_ && edges != std::array<int32_t, 4>{}) {
            report.box = Box{edges[0], edges[2], edges[1], edges[3]};
        }
        frames.push_back(report);
        frame_ = -1;
    } else if (line == "finish.") {
        ++finish_lines_;
    } else if (line.starts_with("INFO: exec: ") &&
               line.find("-vf scale=") != std::string_view::npos) {
        scaling = ScalingOf(line);
    } else if (line.starts_with("INFO: set output H to ")) {
        std::array<int32_t, 1> number{};
        if (Numbers(line, &number)) height = number[0];
    } else if (IsComplaint(line)) {
        complaint = line;
    }
}

}  // namespace lab
