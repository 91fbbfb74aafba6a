#include <clocale>
#include <csignal>
#include <cstdlib>
#include <curl/curl.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/serving.h"
#include "platform/linux/process/memory_privacy.h"
#include "programs/http/server.h"

// The HTTP process. It serves the program that started it over standard input and output, and exits when its
// standard input ends.

namespace {

/// The user's keys and texts go through this process, and untrusted data from servers.
void limitOneself() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);  // hides its memory from the user's other programs
    tralio::memory_privacy::begin();
}

}  // namespace

int main(int argc, char** argv) {
    // A hung process would not see the end of its input and would live on, with the user's key in its memory.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    std::setlocale(LC_CTYPE, "C.UTF-8");  // libcurl converts host names in this locale
    limitOneself();
    if (const auto refusal = tralio::serving::whyNot(argc, argv, "speak with servers"))
        return *refusal;
    const int replies = tralio::frames::takeStandardOutput();
    if (replies < 0 || curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return EXIT_FAILURE;
    mallopt(M_ARENA_MAX, 1);  // the threads for name and proxy look-ups need no arenas of their own
    int status = EXIT_FAILURE;
    {
        tralio::Server server(STDIN_FILENO, replies);
        status = server.run();
    }
    // Without running destructors: a proxy look-up may still run in a thread that cannot be ended.
    _exit(status);
}
