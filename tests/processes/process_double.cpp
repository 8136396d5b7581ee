// A process for tests to look at. By its second argument:
//   threads N     lives on with N further threads
//   title TEXT    writes TEXT over its own arguments, as servers do
//   children N    lives on with N children that do nothing
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

[[noreturn]] void sleepForEver() {
    while (true) {
        pause();
    }
}

void overwriteArguments(int argc, char* argv[], const std::string& title) {
    char* const end = argv[argc - 1] + std::strlen(argv[argc - 1]);
    std::memset(argv[0], 0, static_cast<std::size_t>(end - argv[0]));
    title.copy(argv[0], static_cast<std::size_t>(end - argv[0]));
}

void fork(int count) {
    for (int child = 0; child < count; ++child) {
        if (::fork() == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            sleepForEver();
        }
    }
}

} // namespace

int main(int argc, char* argv[]) {
    const std::string_view mode = argc > 2 ? argv[1] : "";
    if (mode == "threads") {
        for (int thread = std::stoi(argv[2]); thread > 0; --thread) {
            std::thread(sleepForEver).detach();
        }
    } else if (mode == "title") {
        overwriteArguments(argc, argv, std::string(argv[2]));
    } else if (mode == "children") {
        fork(std::stoi(argv[2]));
    } else {
        return EXIT_FAILURE;
    }
    sleepForEver();
}
