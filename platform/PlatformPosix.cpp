#include "platform/Platform.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Lumora::Platform {

char pathSeparator() {
    return '/';
}

std::string userConfigFolder() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg) {
        return xdg;
    }
    if (const char* home = std::getenv("HOME"); home && *home) {
        return std::string(home) + "/.config";
    }
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_dir) {
        return std::string(pw->pw_dir) + "/.config";
    }
    return {};
}

bool makeFolders(const std::string& path) {
    if (path.empty()) {
        return false;
    }
    std::string partial;
    partial.reserve(path.size());
    for (size_t i = 0; i <= path.size(); ++i) {
        if (i == path.size() || (path[i] == '/' && i > 0)) {
            partial.assign(path, 0, i);
            if (mkdir(partial.c_str(), 0755) != 0 && errno != EEXIST) {
                return false;
            }
        }
    }
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool replaceFile(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

static bool syncPath(const std::string& path, int flags) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    int rc;
    do {
        rc = ::fsync(fd);
    } while (rc != 0 && errno == EINTR);
    // EINVAL: the file system cannot flush this kind of file (some pseudo and
    // network file systems); there is nothing more durable to be had there.
    const bool ok = rc == 0 || errno == EINVAL;
    ::close(fd);
    return ok;
}

bool syncFile(const std::string& path) {
    return syncPath(path, O_RDONLY);
}

bool syncFolder(const std::string& path) {
    return syncPath(path, O_RDONLY | O_DIRECTORY);
}

bool fileExists(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0;
}

bool localTime(std::time_t t, std::tm& out) {
    return localtime_r(&t, &out) != nullptr;
}

bool fileReadable(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && access(path.c_str(), R_OK) == 0;
}

std::string folderOfBinaryContaining(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || !info.dli_fname) {
        return {};
    }
    std::string file = info.dli_fname;
    const auto slash = file.find_last_of('/');
    return slash == std::string::npos ? std::string(".") : file.substr(0, slash);
}

DynamicLibrary::~DynamicLibrary() {
    close();
}

bool DynamicLibrary::open(const std::string& path) {
    close();
    handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return handle_ != nullptr;
}

void DynamicLibrary::close() {
    if (handle_) {
        dlclose(handle_);
        handle_ = nullptr;
    }
}

void* DynamicLibrary::symbol(const char* name) const {
    return handle_ ? dlsym(handle_, name) : nullptr;
}

std::string DynamicLibrary::platformFileName(const std::string& baseName) {
    return "lib" + baseName + ".so";
}

} // namespace Lumora::Platform
