#include "PrivateMount.h"

#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace snapvane::testing {

namespace {

void writeLine(const char* path, const char* format, unsigned int id) {
    char line[64];
    const int length = std::snprintf(line, sizeof line, format, id, id);
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    [[maybe_unused]] const ssize_t written = write(file, line, static_cast<size_t>(length));
    close(file);
}

/// An ordinary user gets the right to mount in a user name space of its own, under its own id.
bool enterUserNameSpace() {
    const unsigned int user = geteuid();
    const unsigned int group = getegid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    writeLine("/proc/self/setgroups", "deny", 0);
    writeLine("/proc/self/uid_map", "%u %u 1", user);
    writeLine("/proc/self/gid_map", "%u %u 1", group);
    return true;
}

} // namespace

bool mountTinyDisk(const char* folder) {
    if (unshare(CLONE_NEWNS) != 0 && !enterUserNameSpace()) {
        return false;
    }
    // Without this the mount could show outside. In a plain chroot the root is no mount point and
    // it is refused; then nothing is mounted.
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return false;
    }
    return mount("tiny", folder, "tmpfs", 0, "size=64k,mode=0700") == 0;
}

bool canMountPrivately() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(mountTinyDisk("/tmp") ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace snapvane::testing
