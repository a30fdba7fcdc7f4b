// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/plan.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "lab/score/scores.h"
#include "lab/tool/error.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

constexpr uint64_t kMaxTake = 1000000;

// Reads one plan; the members know the file for messages and for relative paths.
class Reader {
  public:
    explicit Reader(const std::string& path)
        : path_(path), folder_(fs::absolute(path).parent_path()) {}

    Plan Read() {
        const YAML::Node root = Load();
        if (!root.IsMap())
            Refuse(root, "a plan is a list of words with values: settings, clips, keys");
        CheckWords(root, {"settings", "clips", "keys", "take", "seed", "expect"});
        plan_.path = path_;
        for (const char* word : {"settings", "clips"}) {
            if (!root[word]) Refuse(root, std::string(word) + " is missing");
        }
        plan_.settings_path = Path(root["settings"]);
        plan_.settings = ReadSettings(plan_.settings_path);
        ReadClips(root["clips"]);
        if (root["keys"]) ReadKeys(root["keys"]);
        if (root["take"]) plan_.take = Whole(root["take"], 1, kMaxTake);
        if (root["seed"]) plan_.seed = Whole(root["seed"], 0, UINT64_MAX);
        if (root["expect"]) ReadExpect(root["expect"]);
        return std::move(plan_);
    }

  private:
    [[noreturn]] void RefuseAt(const YAML::Mark& mark, const std::string& why) const {
        // An empty file has no place of its own.
        throw Error(path_ + ":" + std::to_string(std::max(mark.line, 0) + 1) + ":" +
                    std::to_string(std::max(mark.column, 0) + 1) + ": " + why);
    }
    [[noreturn]] void Refuse(const YAML::Node& node, const std::string& why) const {
        RefuseAt(node.Mark(), why);
    }

    YAML::Node Load() const {
        if (!fs::is_regular_file(path_)) throw Error(path_ + ": cannot be read");
        try {
            return YAML::LoadFile(path_);
        } catch (const YAML::ParserException& error) {
            RefuseAt(error.mark, error.msg);
        }
    }

    // Every word of a map must be known and be there once.
    void CheckWords(const YAML::Node& map, const std::set<std::string>& known) const {
        std::set<std::string> seen;
        for (const auto& item : map) {
            const std::string word = item.first.Scalar();
            if (!known.empty() && known.count(word) == 0) {
                std::string all;
                for (const std::string& name : known) all += (all.empty() ? "" : ", ") + name;
                Refuse(item.first,
                       std::string(word).append(" is not known here; known: ").append(all));
            }
            if (!seen.insert(word).second) Refuse(item.first, word + " is here twice");
        }
    }

    std::string Text(const YAML::Node& node) const {
        if (!node.IsScalar() || node.Scalar().empty())
            Refuse(node, "one text or number is expected");
        return node.Scalar();
    }

    std::string Path(const YAML::Node& node) const {
        const fs::path path = folder_ / Text(node);
        if (!fs::exists(path)) Refuse(node, path.string() + " does not exist");
        return fs::canonical(path).string();
    }

    uint64_t Whole(const YAML::Node& node, uint64_t least, uint64_t most) const {
        const std::string text = Text(node);
        char* end = nullptr;
        errno = 0;
        const unsigned long long value = std::strtoull(text.c_str(), &end, 10);
        if (*end != '\0' || text[0] == '-' || errno != 0 || value < least || value > most) {
            Refuse(node, text + " is not a whole number from " + std::to_string(least) + " to " +
                             std::to_string(most));
        }
        return value;
    }

    void ReadClips(const YAML::Node& list) {
        if (!list.IsSequence() || list.size() == 0) Refuse(list, "clips is a list of clips");
        std::set<std::string> names;
        for (const YAML::Node& node : list) {
            PlanClip clip = node.IsMap() ? ClipOf(node) : PlanClip{};
            if (!node.IsMap()) clip.file = Path(node);
            if (clip.name.empty()) clip.name = fs::path(clip.file).stem().string();
            if (!names.insert(clip.name).second) {
                Refuse(node, "a second clip " + clip.name + ": give it a name of its own");
            }
            plan_.clips.push_back(std::move(clip));
        }
    }

    PlanClip ClipOf(const YAML::Node& node) const {
        CheckWords(node, {"file", "labels", "name", "type", "width", "height"});
        if (!node["file"]) Refuse(node, "a clip needs file");
        PlanClip clip;
        clip.file = Path(node["file"]);
        if (node["name"]) clip.name = Text(node["name"]);
        if (node["labels"]) {
            clip.label_file = Path(node["labels"]);
            clip.labels = ReadLabels(clip.label_file);
        }
        if (node["type"]) clip.type = Value(RowOf("InputFileType"), node["type"]);
        if (node["width"]) clip.width = Value(RowOf("InputWidth"), node["width"]);
        if (node["height"]) clip.height = Value(RowOf("InputHeight"), node["height"]);
        return clip;
    }

    std::string Value(int row, const YAML::Node& node) const {
        try {
            return NormalValue(aInputKeys[static_cast<size_t>(row)], Text(node));
        } catch (const Error& error) {
            Refuse(node, error.what());
        }
    }

    void ReadKeys(const YAML::Node& map) {
        if (!map.IsMap()) Refuse(map, "keys is a list of keys with their values");
        CheckWords(map, {});
        for (const auto& item : map) {
            PlanKey key;
            const std::string name = item.first.Scalar();
            key.row = RowOf(name);
            if (key.row < 0) {
                Refuse(item.first,
                       name + " is no key of MD; did you mean " + NearestKey(name) + "?");
            }
            if (SetBySweep(key.row)) Refuse(item.first, name + " is set by the sweep itself");
            if (item.second.IsSequence()) {
                for (const YAML::Node& value : item.second) AddValues(value, &key);
            } else {
                AddValues(item.second, &key);
            }
            if (key.values.empty()) Refuse(item.second, name + " has no values");
            plan_.keys.push_back(std::move(key));
        }
    }

    void AddValues(const YAML::Node& node, PlanKey* key) const {
        const std::string text = Text(node);
        std::vector<std::string> values;
        try {
            values = ValuesOf(aInputKeys[static_cast<size_t>(key->row)], text);
        } catch (const Error& error) {
            Refuse(node, error.what());
        }
        for (std::string& value : values) {
            if (std::find(key->values.begin(), key->values.end(), value) != key->values.end()) {
                Refuse(node, value + " is among the values already");
            }
            key->values.push_back(std::move(value));
        }
    }

    void ReadExpect(const YAML::Node& map) {
        if (!map.IsMap()) Refuse(map, "expect is a list of scores with limits");
        CheckWords(map, {});
        for (const auto& item : map) {
            if (item.first.Scalar() != "clips") {
                plan_.limits.push_back(LimitOf(item.first, item.second, -1));
                continue;
            }
            if (!item.second.IsMap()) Refuse(item.second, "clips is a list of clips with limits");
            CheckWords(item.second, {});
            for (const auto& clip : item.second) ReadClipLimits(clip.first, clip.second);
        }
    }

    void ReadClipLimits(const YAML::Node& name, const YAML::Node& map) {
        const auto at =
            std::find_if(plan_.clips.begin(), plan_.clips.end(),
                         [&](const PlanClip& clip) { return clip.name == name.Scalar(); });
        if (at == plan_.clips.end()) Refuse(name, name.Scalar() + " is no clip of the plan");
        if (!map.IsMap()) Refuse(map, "a list of scores with limits is expected");
        CheckWords(map, {});
        for (const auto& item : map) {
            plan_.limits.push_back(
                LimitOf(item.first, item.second, static_cast<int>(at - plan_.clips.begin())));
        }
    }

    PlanLimit LimitOf(const YAML::Node& name, const YAML::Node& node, int clip) const {
        PlanLimit limit;
        limit.clip = clip;
        const auto& table = ScoreTable();
        while (limit.score < table.size() && name.Scalar() != table[limit.score].name)
            ++limit.score;
        if (limit.score == table.size()) {
            Refuse(name, name.Scalar() + " is no score; docs/scores.md lists them");
        }
        const std::string text = Text(node);
        limit.at_least = text.rfind("at least ", 0) == 0;
        if (!limit.at_least && text.rfind("at most ", 0) != 0) {
            Refuse(node, text + ": a limit is written as at least 0.9 or at most 20");
        }
        const std::string number = text.substr(limit.at_least ? 9 : 8);
        char* end = nullptr;
        limit.value = std::strtod(number.c_str(), &end);
        if (end == number.c_str() || *end != '\0' || !std::isfinite(limit.value)) {
            Refuse(node, number + " is not a number");
        }
        return limit;
    }

    std::string path_;
    fs::path folder_;
    Plan plan_;
};

}  // namespace

Plan ReadPlan(const std::string& path) {
    return Reader(path).Read();
}

std::string LimitText(const PlanLimit& limit) {
    return std::string(ScoreTable()[limit.score].name) +
           (limit.at_least ? " at least " : " at most ") + ScoreText(limit.value);
}

}  // namespace lab
