// A file system that doesn't answer, for the tests. Preloaded into a program (`LD_PRELOAD`), it makes whoever
// lists a folder, or moves something into it, wait for as long as another process has an exclusive `flock` on
// that folder. The program's code stays as it is: it waits in a call to the system, as it would for a server
// on a network.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <filesystem>

namespace {

template <typename Function> Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

void waitFor(int folder)
{
    const int before = errno;
    while (::flock(folder, LOCK_SH) != 0 && errno == EINTR) {
    }
    ::flock(folder, LOCK_UN);
    errno = before;
}

void waitForFolderOf(int start, const char *path)
{
    const auto folder = std::filesystem::path(path).parent_path();
    const int descriptor =
        ::openat(start, folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        waitFor(descriptor);
        ::close(descriptor);
    }
}

} // namespace

extern "C" ssize_t getdents64(int descriptor, void *buffer, std::size_t size) noexcept
{
    static auto *const real = next<ssize_t(int, void *, std::size_t)>("getdents64");
    waitFor(descriptor);
    return real(descriptor, buffer, size);
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    static auto *const real = next<int(const char *, const char *)>("rename");
    waitForFolderOf(AT_FDCWD, to);
    return real(from, to);
}

extern "C" int
renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags) noexcept
{
    static auto *const real = next<int(int, const char *, int, const char *, unsigned int)>("renameat2");
    waitForFolderOf(toFolder, to);
    return real(fromFolder, from, toFolder, to, flags);
}
