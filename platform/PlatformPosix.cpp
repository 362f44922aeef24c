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

namespace {

// Closes a descriptor on every way out.
struct Fd {
    int fd;
    ~Fd() {
        if (fd >= 0) {
            ::close(fd);
        }
    }
};

bool isRegular(int fd) {
    struct stat st {};
    return ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
}

bool writeAll(int fd, std::string_view bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        done += static_cast<size_t>(n);
    }
    return true;
}

bool finish(Fd& file, std::string_view bytes) {
    const bool written = writeAll(file.fd, bytes);
    const int fd = file.fd;
    file.fd = -1;
    return (::close(fd) == 0) && written;
}

} // namespace

std::optional<std::string> readFile(const std::string& path, size_t maxBytes) {
    // O_NONBLOCK: opening a FIFO without a writer returns at once instead of
    // waiting; it is then refused as not a regular file.
    Fd file{::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    struct stat st {};
    if (file.fd < 0 || ::fstat(file.fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<unsigned long long>(st.st_size) > maxBytes) {
        return std::nullopt;
    }
    std::string bytes;
    char chunk[16384];
    for (;;) {
        const ssize_t n = ::read(file.fd, chunk, sizeof chunk);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            return std::nullopt;
        }
        if (n == 0) {
            return bytes;
        }
        bytes.append(chunk, static_cast<size_t>(n));
        if (bytes.size() > maxBytes) {
            return std::nullopt; // grew while being read
        }
    }
}

bool writeFile(const std::string& path, std::string_view bytes) {
    // A FIFO without a reader fails to open (ENXIO) rather than blocking; any
    // other special file is refused before a byte is written.
    Fd file{::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666)};
    if (file.fd < 0 || !isRegular(file.fd) || ::ftruncate(file.fd, 0) != 0) {
        return false;
    }
    return finish(file, bytes);
}

bool writeNewFile(const std::string& path, std::string_view bytes) {
    if (!removeFile(path)) {
        return false;
    }
    Fd file{::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666)};
    if (file.fd < 0) {
        return false;
    }
    return finish(file, bytes);
}

bool removeFile(const std::string& path) {
    return ::unlink(path.c_str()) == 0 || errno == ENOENT;
}

std::vector<std::string> commandLine(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

void useUtf8Console() {}

std::optional<std::string> environment(const char* name) {
    const char* value = std::getenv(name);
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
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
