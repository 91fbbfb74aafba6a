#include <QCoreApplication>
#include <QImageReader>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/linux/helpers/frames.h"
#include "platform/linux/helpers/serving.h"
#include "platform/linux/process/memory_privacy.h"
#include "programs/recogniser/recogniser_session.h"

// The recogniser's own process. It serves the program that started it over its standard input and output, and
// ends when its input does.

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace recogniser_protocol;

/// Whether there is something to read already, or the other side is gone.
bool hasInput() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    int ready = 0;
    do
        ready = poll(&input, 1, 0);
    while (ready < 0 && errno == EINTR);
    return ready != 0;
}

/// Images come from anywhere: what a faulty decoder can be made to do is bounded, and the largest image that
/// is served stays well below. Beyond a limit this process dies, and costs that one image.
void limitOneself() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    constexpr rlimit none{0, 0};
    memory_privacy::begin();         // a core would hold what was on the user's screen
    setrlimit(RLIMIT_FSIZE, &none);  // nothing is ever written to a file
    std::signal(SIGXFSZ, SIG_IGN);   // a warning to a log in a file is lost, and not the picture
#ifndef __SANITIZE_ADDRESS__         // which reserves terabytes
    constexpr rlimit memory{rlim_t(3) << 30, rlim_t(3) << 30};
    setrlimit(RLIMIT_AS, &memory);
#endif
}

int serve() {
    const int replies = frames::takeStandardOutput();
    if (replies < 0)
        return EXIT_FAILURE;
    RecogniserSession session([replies](const Reply& reply) { frames::writeAll(replies, encode(reply)); });
    frames::Reader requests(maximumRequest);
    for (;;) {
        while (const auto payload = requests.next()) {
            const auto request = decodeRequest(*payload);
            if (!request)
                return EXIT_FAILURE;
            session.handle(*request);
        }
        if (requests.isBroken())
            return EXIT_FAILURE;
        while (!hasInput() && session.prepareFurther()) {
        }
        if (!requests.readFrom(STDIN_FILENO))
            return EXIT_SUCCESS;
    }
}

}  // namespace
}  // namespace tralio

int main(int argc, char** argv) {
    // A recognition under way does not notice that the program is gone.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    tralio::limitOneself();
    if (const auto refusal = tralio::serving::whyNot(argc, argv, "read text in images"))
        return *refusal;

    const QCoreApplication application(argc, argv);
    constexpr int megabytesForAnImage = 512;
    QImageReader::setAllocationLimit(megabytesForAnImage);
    return tralio::serve();
}
