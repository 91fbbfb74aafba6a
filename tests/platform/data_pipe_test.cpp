#include "platform/linux/wayland/data_pipe.h"

#include <csignal>
#include <thread>
#include <unistd.h>

#include "support/testing.h"

namespace tralio {
namespace {

TEST(DataPipe, is_read_to_one_byte_over_the_limit_whatever_is_still_to_come) {
    std::signal(SIGPIPE, SIG_IGN);
    const QByteArray content(1'000'000, 'x');
    for (const qsizetype most : {content.size(), content.size() - 1, qsizetype(1000)}) {
        std::optional<DataPipeReader> pipe(std::in_place);
        std::thread writer([&content, end = dup(pipe->writeEnd())] {
            (void)!::write(end, content.constData(), static_cast<size_t>(content.size()));
            close(end);
        });
        pipe->closeWriteEnd();
        const auto read = pipe->read(most, QDeadlineTimer(20'000));
        pipe.reset();
        writer.join();
        EXPECT_EQ(read.value_or(QByteArray()).size(), std::min(content.size(), most + 1));
    }
}

}  // namespace
}  // namespace tralio
