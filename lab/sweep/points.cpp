// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/points.h"

#include <algorithm>
#include <map>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "lab/settings/key_use.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

constexpr uint64_t kMaxPoints = 1000000;

uint64_t ProductOf(const Plan& plan) {
    uint64_t product = 1;
    for (const PlanKey& key : plan.keys) {
        if (__builtin_mul_overflow(product, key.values.size(), &product)) {
            throw Error(plan.path + ": more than 2^64 combinations");
        }
    }
    return product;
}

// Values with the default in the keys that a run with them does not read.
Settings ReadOnly(const Settings& settings) {
    static const Settings defaults = DefaultSettings();
    const SimParams record = Record(settings);
    Settings read = settings;
    for (size_t row = 0; row < settings.size(); ++row) {
        if (!WhyIdle(aInputKeys[row].TokenName, record).empty()) read[row] = defaults[row];
    }
    return read;
}

std::string AsText(const Settings& settings) {
    std::string text;
    for (const std::string& value : settings) text.append(value).append("\n");
    return text;
}

// An even draw below `bound`, the same on every platform.
uint64_t Below(std::mt19937_64* random, uint64_t bound) {
    const uint64_t uneven = (UINT64_MAX % bound + 1) % bound;
    uint64_t value = (*random)();
    while (value > UINT64_MAX - uneven) value = (*random)();
    return value % bound;
}

}  // namespace

std::vector<uint64_t> Draw(uint64_t product, uint64_t take, uint64_t seed) {
    // A shuffle of 0 to product - 1 that stops after `take` places; `moved` holds the places that
    // differ from their number.
    std::mt19937_64 random(seed);
    std::unordered_map<uint64_t, uint64_t> moved;
    const auto At = [&](uint64_t place) {
        const auto found = moved.find(place);
        return found == moved.end() ? place : found->second;
    };
    std::vector<uint64_t> drawn;
    for (uint64_t i = 0; i < std::min(take, product); ++i) {
        const uint64_t other = i + Below(&random, product - i);
        drawn.push_back(At(other));
        moved[other] = At(i);
    }
    return drawn;
}

Points PointsOf(const Plan& plan) {
    Points all;
    all.product = ProductOf(plan);
    all.chosen = std::min(all.product, plan.take.value_or(all.product));
    if (all.chosen > kMaxPoints) {
        throw Error(plan.path + ": " + std::to_string(all.product) +
                    " points are too many to run; say how many to take");
    }
    std::vector<uint64_t> drawn;
    if (plan.take) drawn = Draw(all.product, *plan.take, plan.seed);
    std::unordered_set<std::string> seen;
    std::vector<bool> used(plan.keys.size(), false);
    std::vector<std::string> reasons(plan.keys.size());
    for (uint64_t i = 0; i < all.chosen; ++i) {
        uint64_t number = plan.take ? drawn[i] : i;
        Point point;
        Settings settings = plan.settings;
        // The last key changes fastest, as digits do.
        for (size_t k = plan.keys.size(); k-- > 0;) {
            const PlanKey& key = plan.keys[k];
            settings[static_cast<size_t>(key.row)] = key.values[number % key.values.size()];
            number /= key.values.size();
        }
        point.settings = ReadOnly(settings);
        const SimParams record = Record(settings);
        for (size_t k = 0; k < plan.keys.size(); ++k) {
            const auto row = static_cast<size_t>(plan.keys[k].row);
            const std::string why = WhyIdle(aInputKeys[row].TokenName, record);
            point.values.push_back(why.empty() ? settings[row] : "");
            used[k] = used[k] || why.empty();
            reasons[k] = why;
        }
        if (seen.insert(AsText(point.settings)).second) all.points.push_back(std::move(point));
    }
    for (size_t k = 0; k < plan.keys.size(); ++k) {
        if (used[k]) continue;
        const char* name = aInputKeys[static_cast<size_t>(plan.keys[k].row)].TokenName;
        all.idle.push_back(std::string(name).append(": ").append(reasons[k]));
    }
    return all;
}

}  // namespace lab
