#include "output_file.h"

#include "engine.h"

#include <errno.h>
#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

static bool write_all(int descriptor, const char* data, size_t size) {
    while (size > 0) {
        ssize_t count = write(descriptor, data, size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        data += count;
        size -= (size_t)count;
    }
    return true;
}

/* Makes a file beside the one meant, with a name that nobody has. */
static int create_beside(const char* path, char* name, size_t room) {
    for (unsigned attempt = 0;; attempt++) {
        snprintf(name, room, "%s.%ld.%u", path, (long)getpid(), attempt);
        int descriptor = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
}

/* Fills the file that is to take the other's place; it keeps that one's permissions. */
static bool fill_and_close(int descriptor, const struct stat* old, const char* data, size_t size) {
    bool done = (!old || fchmod(descriptor, old->st_mode & 07777) == 0) &&
                write_all(descriptor, data, size) && fsync(descriptor) == 0;
    int reason = errno;
    if (close(descriptor) == 0) {
        errno = reason;
        return done;
    }
    return false;
}

static bool replace_file(const char* path, const char* data, size_t size) {
    char name[MAXPATHLEN + 32];
    struct stat status;
    bool exists = stat(path, &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) { /* a device would become a file */
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return false;
    }
    int descriptor = create_beside(path, name, sizeof name);
    if (descriptor < 0) return false;
    if (fill_and_close(descriptor, exists ? &status : NULL, data, size) && rename(name, path) == 0)
        return true;
    int reason = errno;
    unlink(name);
    errno = reason;
    return false;
}

const char* write_whole_file(const char* path, const char* data, size_t size) {
    if (php_check_open_basedir(path)) return strerror(EPERM);
    if (!*path) return strerror(ENOENT);
    char* full = expand_filepath(path, NULL); /* a link leads to the file itself */
    if (!full) return strerror(ENAMETOOLONG);
    const char* reason = replace_file(full, data, size) ? NULL : strerror(errno);
    efree(full);
    return reason;
}
