// Shows the main function on a virtual desktop, for a machine without a display: selects a paragraph in a
// text editor, presses the hot key, and reads the translation back from the popover. The model is a stand-in.
//
// Usage: tralio-demo SCREENSHOT.png

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <exception>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"

namespace {

using namespace Qt::StringLiterals;
using namespace tralio;

const QString source =
    u"The best interface is the one you stop noticing. It answers the question you had, keeps your place, "
    u"and then "
    u"gets quietly out of the way."_s;
const QString translation =
    u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa. Nó giải đáp đúng điều bạn thắc mắc, giữ "
    u"nguyên "
    u"chỗ bạn đang làm dở, rồi lặng lẽ nhường đường."_s;

int show(const QString& screenshot) {
    QTextStream out(stdout);
    VirtualDesktop desktop;
    desktop.startCompositor();
    ProgramRun program(desktop);
    program.standIn().translatesTo(translation);
    out << "The model is a stand-in on " << program.standIn().baseURL()
        << ": it gives one prepared answer, whatever it is asked.\n"
        << Qt::flush;

    desktop.start(u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"paragraph.txt"_s, source)});
    const QString editor = desktop.bringToFront(u"Mousepad"_s);
    if (editor.isEmpty()) {
        out << "The editor did not come up.\n";
        return EXIT_FAILURE;
    }
    desktop.run(u"xdotool"_s,
        {u"windowsize"_s, u"--sync"_s, editor, u"620"_s, u"300"_s, u"windowmove"_s, editor, u"60"_s,
            u"480"_s});
    desktop.press(u"ctrl+a"_s);

    QElapsedTimer sinceThePress;
    sinceThePress.start();
    const QString arrived = program.translateSelection();
    const bool shown = waitUntil([&] { return program.shownTranslation() == translation; }, 5);
    const qint64 elapsed = sinceThePress.elapsed();
    desktop.screenshot(screenshot);

    out << "Selected in the editor:  " << source << "\nArrived at the model:    " << arrived
        << "\nShown in the popover:    " << program.shownTranslation()
        << "\nFrom press to reading:   " << elapsed << " ms\nScreenshot:              " << screenshot << '\n';
    return shown && arrived == source ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    try {
        return show(QApplication::arguments().value(1, u"screenshot.png"_s));
    } catch (const std::exception& error) {
        QTextStream(stderr) << "The virtual desktop cannot be had: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
