#include "lab/tool/result_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "lab/tool/error.h"

namespace lab {

ResultFile::ResultFile(std::string path)
    : path_(std::move(path)), temporary_(path_ + ".part" + std::to_string(getpid())) {
    file_ = std::fopen(temporary_.c_str(), "wb");
    if (file_ == nullptr) throw Error(path_ + ": cannot be written: " + std::strerror(errno));
}

ResultFile::~ResultFile() {
    if (file_ == nullptr) return;
    std::fclose(file_);
    std::remove(temporary_.c_str());
}

void ResultFile::Write(std::string_view bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), file_);
}

void ResultFile::Commit() {
    errno = 0;
    const bool whole = std::fflush(file_) == 0 && std::ferror(file_) == 0;
    int reason = errno;
    const bool closed = std::fclose(std::exchange(file_, nullptr)) == 0;
    if (whole && !closed) reason = errno;
    if (whole && closed && std::rename(temporary_.c_str(), path_.c_str()) == 0) return;
    if (whole && closed) reason = errno;
    std::remove(temporary_.c_str());
    throw Error(path_ + ": cannot be written: " + std::strerror(reason));
}

}  // namespace lab
