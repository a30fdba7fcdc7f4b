// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// opencv_peers absdiff|mog2|hog WIDTH HEIGHT FRAMES CLIP: what one would take from OpenCV to see
// motion, on the luma of a raw 4:2:0 clip, read frame by frame, on one thread. Prints the sum of
// what it found, so that nothing is left out as unused. opencv_peers version: the library's
// version.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/objdetect.hpp>
#include <opencv2/video.hpp>
#include <string>
#include <vector>

namespace {

using Find = std::function<double(const cv::Mat& luma)>;  // what a frame comes to

constexpr int kBack = 3;         // frames between a frame and its reference
constexpr int kDifference = 15;  // of luma, more is motion
constexpr int kSpeckle = 16;     // pixels, smaller is none
constexpr int kBlock = 16, kStride = 8;

// The box around all spots that are no speckle.
cv::Rect BoxOfSpots(const cv::Mat& mask) {
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    cv::Rect box;
    for (const auto& outline : outlines) {
        const cv::Rect spot = cv::boundingRect(outline);
        if (spot.area() >= kSpeckle) box |= spot;
    }
    return box;
}

// |frame - frame three back| over a threshold; the box around all of it, by `box`.
Find AbsDiff(cv::Rect (*box)(const cv::Mat& mask)) {
    struct State {
        std::array<cv::Mat, kBack> earlier;
        cv::Mat difference, mask;
        size_t frame = 0;
    };
    auto state = std::make_shared<State>();
    return [state, box](const cv::Mat& luma) {
        cv::Mat& reference = state->earlier[state->frame++ % kBack];
        double found = 0;
        if (!reference.empty()) {
            cv::absdiff(luma, reference, state->difference);
            cv::threshold(state->difference, state->mask, kDifference, 255, cv::THRESH_BINARY);
            found = box(state->mask).area();
        }
        luma.copyTo(reference);
        return found;
    };
}

// The model of the background with its usual settings, without shadows; the box around spots before
// it.
Find Mog2() {
    const auto model = cv::createBackgroundSubtractorMOG2(500, 16, false);
    auto mask = std::make_shared<cv::Mat>();
    return [model, mask](const cv::Mat& luma) {
        model->apply(luma, *mask);
        return static_cast<double>(BoxOfSpots(*mask).area());
    };
}

// Histograms of gradients of the blocks that MD has: 16x16 at stride 8.
Find Hog(int width, int height) {
    const cv::Size covered((width - kBlock) / kStride * kStride + kBlock,
                           (height - kBlock) / kStride * kStride + kBlock);
    auto hog = std::make_shared<cv::HOGDescriptor>(covered, cv::Size(kBlock, kBlock),
                                                   cv::Size(kStride, kStride),
                                                   cv::Size(kBlock / 2, kBlock / 2), 9);
    auto values = std::make_shared<std::vector<float>>();
    return [=](const cv::Mat& luma) {
        hog->compute(luma(cv::Rect(cv::Point(), covered)), *values);
        return static_cast<double>(values->at(values->size() / 2));
    };
}

Find FindBy(const std::string& what, int width, int height) {
    if (what == "absdiff") return AbsDiff([](const cv::Mat& m) { return cv::boundingRect(m); });
    if (what == "spots") return AbsDiff(BoxOfSpots);
    if (what == "mog2") return Mog2();
    if (what == "hog") return Hog(width, height);
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "version") return std::puts(CV_VERSION) < 0;
    if (argc != 6) return 2;
    const int width = std::atoi(argv[2]), height = std::atoi(argv[3]), frames = std::atoi(argv[4]);
    const Find find = FindBy(argv[1], width, height);
    std::FILE* clip = std::fopen(argv[5], "rb");
    if (find == nullptr || clip == nullptr || width < kBlock || height < kBlock) return 2;
    cv::setNumThreads(1);
    std::vector<uint8_t> frame(static_cast<size_t>(width) * height * 3 / 2);
    const cv::Mat luma(height, width, CV_8UC1, frame.data());
    double sum = 0;
    int done = 0;
    for (; done < frames; ++done) {
        if (std::fread(frame.data(), 1, frame.size(), clip) != frame.size()) {
            std::rewind(clip);
            if (std::fread(frame.data(), 1, frame.size(), clip) != frame.size()) break;
        }
        sum += find(luma);
    }
    std::fclose(clip);
    std::printf("%d frames, %.3f\n", done, sum);
    return done == frames ? 0 : 1;
}
