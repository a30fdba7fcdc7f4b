// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/spool.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "lab/tool/error.h"

namespace lab {

namespace {

[[noreturn]] void Fail(const std::string& path, const char* what) {
    throw Error(path + ": " + what + ": " + std::strerror(errno));
}

}  // namespace

SpoolWriter::SpoolWriter(std::string path)
    : path_(std::move(path)), file_(std::fopen(path_.c_str(), "wb")) {
    if (file_ == nullptr) Fail(path_, "cannot be written");
}

void SpoolWriter::Append(std::string_view record) {
    const uint64_t size = record.size();
    if (std::fwrite(&size, sizeof size, 1, file_.get()) != 1 ||
        std::fwrite(record.data(), 1, record.size(), file_.get()) != record.size()) {
        Fail(path_, "cannot be written");
    }
}

void SpoolWriter::Finish() {
    if (std::fclose(file_.release()) != 0) Fail(path_, "cannot be written");
}

SpoolReader::SpoolReader(const std::string& path)
    : path_(path), file_(std::fopen(path.c_str(), "rb")) {
    if (file_ == nullptr) Fail(path_, "cannot be read");
    int64_t offset = 0;
    uint64_t size = 0;
    while (std::fread(&size, sizeof size, 1, file_.get()) == 1) {
        offset += static_cast<int64_t>(sizeof size);
        offsets_.push_back(offset);
        sizes_.push_back(static_cast<int64_t>(size));
        offset += static_cast<int64_t>(size);
        if (fseeko(file_.get(), offset, SEEK_SET) != 0) Fail(path_, "cannot be read");
    }
}

std::string SpoolReader::Read(size_t index) const {
    std::string record(static_cast<size_t>(sizes_[index]), '\0');
    if (fseeko(file_.get(), offsets_[index], SEEK_SET) != 0 ||
        std::fread(record.data(), 1, record.size(), file_.get()) != record.size()) {
        Fail(path_, "cannot be read");
    }
    return record;
}

bool SameSpools(const SpoolReader& a, const SpoolReader& b) {
    if (a.Count() != b.Count()) return false;
    for (size_t i = 0; i < a.Count(); ++i) {
        if (a.Size(i) != b.Size(i) || a.Read(i) != b.Read(i)) return false;
    }
    return true;
}

}  // namespace lab
