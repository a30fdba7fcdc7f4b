#include "lab/tool/temp_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "lab/tool/error.h"

namespace lab {

TempFolder::TempFolder() {
    const char* base = std::getenv("TMPDIR");
    std::error_code error;
    // Absolute: MD takes a relative path from the folder of its settings.
    const auto folder =
        std::filesystem::absolute(base == nullptr || *base == '\0' ? "/tmp" : base, error);
    path_ = folder / "mdlab.XXXXXX";
    if (error || mkdtemp(path_.data()) == nullptr) {
        throw Error(path_ + ": temporary folder cannot be made: " + std::strerror(errno));
    }
}

TempFolder::~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

}  // namespace lab
