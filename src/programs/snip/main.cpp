// Lets the user draw a rectangle on the screen and writes its content to a PNG file.
//
//     tralio-snip -i PATH
//
// Exits with 0 when the picture was taken, and also, without a file, when the user cancelled. Any other
// status is an error, with a line on standard error that says why, and without a file.

#include <QFile>

#include <csignal>
#include <cstdio>
#include <exception>
#include <string_view>

#include "programs/snip/picker.h"
#include "programs/snip/picture_file.h"

namespace {

using namespace tralio;

enum ExitStatus { done = 0, failed = 1, misused = 2 };

int fail(const char* reason) {
    std::fprintf(stderr, "tralio-snip: %s\n", reason);
    return failed;
}

int fail(const QString& reason) {
    return fail(reason.toLocal8Bit().constData());
}

int takePicture(const QString& path) {
    const XDisplay display;
    FrozenScreen screen(display);
    const MonitorLayout monitors = display.monitors();
    const auto area = Picker(display, screen, monitors).pick();
    if (!area)
        return done;
    const QString reason = PictureFile::write(screen.cut(*area), monitors.scaleOf(*area), path);
    return reason.isEmpty() ? done : fail(reason);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || std::string_view(argv[1]) != "-i") {
        std::fputs("Usage: tralio-snip -i PATH\n", stderr);
        return misused;
    }
    const QString path = QFile::decodeName(argv[2]);
    // Checked now, rather than after the user has drawn.
    if (const QString obstacle = PictureFile::obstacleAt(path); !obstacle.isEmpty())
        return fail(obstacle);
    try {
        return takePicture(path);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
