#include "platform/linux/InheritedState.h"

#include <csignal>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace vigilo::platform {

void settleInheritedState() {
    // What is written where nobody reads any more, such as a warning of the toolkit's on the
    // terminal that it was started from, must not end a session.
    std::signal(SIGPIPE, SIG_IGN);
    // While this is ignored the kernel does not tell how helpers end.
    std::signal(SIGCHLD, SIG_DFL);
    // The number of a closed one would go to the next that is opened, a connection to the display
    // for one, and warnings be written into that. The children are to have them, too.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) < 0) {
            // The lowest number that is free.
            [[maybe_unused]] const int opened = open("/dev/null", O_RDWR);
        }
    }
}

} // namespace vigilo::platform
