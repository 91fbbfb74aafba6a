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

// The process that speaks with servers. It serves the program that started it over its standard input and
// output, and ends when that input does.

namespace {

/// Keys and texts go through this process, and what servers send.
void limitOneself() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);  // nor may the user's other programs read it
    tralio::memory_privacy::begin();
}

}  // namespace

int main(int argc, char** argv) {
    // While it hangs it does not see the end of its input, with the user's key in its memory.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    std::setlocale(LC_CTYPE, "C.UTF-8");  // in which libcurl reads names of hosts
    limitOneself();
    if (const auto refusal = tralio::serving::whyNot(argc, argv, "speak with servers"))
        return *refusal;
    const int replies = tralio::frames::takeStandardOutput();
    if (replies < 0 || curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return EXIT_FAILURE;
    mallopt(M_ARENA_MAX, 1);  // the threads that ask for names and proxies need none of their own
    int status = EXIT_FAILURE;
    {
        tralio::Server server(STDIN_FILENO, replies);
        status = server.run();
    }
    // At once: a question for a proxy may still be under way, in a thread that nobody can end.
    _exit(status);
}
