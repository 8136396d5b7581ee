#include "platform/linux/login/FileReplacement.h"

#include "platform/linux/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <random>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

namespace fs = std::filesystem;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Where a path leads in the end, also when nothing is there yet.
fs::path followed(fs::path path, std::error_code& error) {
    constexpr int mostLinks = 40; // as the kernel has it
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code none;
        if (!fs::is_symlink(fs::symlink_status(path, none))) {
            return path;
        }
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            return path;
        }
        path = path.parent_path() / target;
    }
    error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    return path;
}

/// Makes the folders that are missing, each for the user alone as the XDG Base Directory
/// Specification asks.
std::error_code makeFolders(const fs::path& folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error)) {
        return {};
    }
    error = makeFolders(folder.parent_path());
    if (!error && mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        error = lastError();
    }
    return error;
}

/// A new file beside another, gone again unless it takes that one's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target) {
        std::random_device random;
        constexpr int attempts = 100;
        for (int attempt = 0; attempt < attempts && !file_; ++attempt) {
            path_ = target.parent_path() /
                    ('.' + target.filename().string() + '.' + std::to_string(random()));
            constexpr mode_t lessUmask = 0666;
            file_ = FileDescriptor(
                open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, lessUmask));
            if (!file_ && errno != EEXIST) {
                return;
            }
        }
    }
    ~TemporaryFile() {
        if (file_) {
            unlink(path_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    explicit operator bool() const { return static_cast<bool>(file_); }

    std::error_code setMode(mode_t mode) {
        return fchmod(file_.number(), mode) == 0 ? std::error_code() : lastError();
    }

    std::error_code write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t count = ::write(file_.number(), content.data(), content.size());
            if (count < 0 && errno != EINTR) {
                return lastError();
            }
            content.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return fsync(file_.number()) == 0 ? std::error_code() : lastError();
    }

    std::error_code replace(const fs::path& target) {
        if (std::rename(path_.c_str(), target.c_str()) != 0) {
            return lastError();
        }
        file_ = FileDescriptor();
        return {};
    }

private:
    fs::path path_;
    FileDescriptor file_;
};

/// Has the disk know the new name; a file system that cannot be asked knows it anyway.
void syncFolder(const fs::path& folder) {
    const FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file) {
        fsync(file.number());
    }
}

} // namespace

std::error_code replaceFile(const fs::path& path, std::string_view content) {
    std::error_code error = makeFolders(path.parent_path());
    if (error) {
        return error;
    }
    const fs::path target = followed(path, error);
    if (error) {
        return error;
    }
    struct stat existing {};
    const bool exists = lstat(target.c_str(), &existing) == 0;
    if (exists && !S_ISREG(existing.st_mode)) {
        return {S_ISDIR(existing.st_mode) ? EISDIR : EEXIST, std::generic_category()};
    }
    TemporaryFile file(target);
    if (!file) {
        return lastError();
    }
    constexpr mode_t permissions = 07777;
    if (exists) {
        error = file.setMode(existing.st_mode & permissions);
    }
    if (!error) {
        error = file.write(content);
    }
    if (!error) {
        error = file.replace(target);
    }
    if (!error) {
        syncFolder(target.parent_path());
    }
    return error;
}

} // namespace vigilo::platform
