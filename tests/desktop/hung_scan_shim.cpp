// Loaded into the program in place of the library's getdents64, with which it walks the process
// table: hangs there for ever, as a kernel does that waits for a lost disk. Says so by making the
// file that HUNG_SCAN_MARK names.
#include <cstdlib>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

extern "C" ssize_t getdents64(int directory, void* entries, std::size_t size);

extern "C" ssize_t getdents64(int, void*, std::size_t) {
    if (const char* const mark = std::getenv("HUNG_SCAN_MARK")) {
        close(open(mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    }
    while (true) {
        pause();
    }
}
