// A network disk that accepts everything, and finds at the end that it has no room: fsync() or
// close(), whichever FAILING_CALL names, fails for files that are open for writing.

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool fails(const char *call, int descriptor)
{
    const char *failing = std::getenv("FAILING_CALL");
    struct stat status;
    return failing && std::strcmp(failing, call) == 0 && fstat(descriptor, &status) == 0
        && S_ISREG(status.st_mode) && (fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
}

int failed()
{
    errno = EDQUOT;
    return -1;
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) int fsync(int descriptor)
{
    return fails("fsync", descriptor) ? failed() : int(syscall(SYS_fsync, descriptor));
}

__attribute__((visibility("default"))) int close(int descriptor)
{
    const bool isFailing = fails("close", descriptor);
    const int result = int(syscall(SYS_close, descriptor));
    return isFailing ? failed() : result;
}
}
