// Writes a picture of every state of every panel, in the light and in the dark scheme, and of the parts of
// the kit:
//     tralio-screenshots FOLDER [--only TEXT] [--accent #rrggbb]
// The scale is that of QT_SCALE_FACTOR, to be set in the environment; a scale other than 1 is in the names of
// the files.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include "common/debug_log.h"
#include "scenes.h"
#include "ui/kit/spinner.h"
#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace {

using namespace Qt::StringLiterals;
using namespace tralio;

/// A picture of a window with its spinners at the start of their turn, which is the same in every run.
QPixmap stillOf(QWidget& window) {
    for (Spinner* spinner : visibleParts<Spinner>(window)) {
        spinner->hide();  // it starts from the beginning when shown again
        spinner->show();
    }
    return window.grab();
}

QPixmap pictureOfComponents() {
    const std::unique_ptr<QWidget> page(componentsPage());
    page->show();
    QTest::qWait(900);  // long enough for a tooltip to appear
    return stillOf(*page);
}

QPixmap pictureOf(const Scene& scene) {
    Stage stage;
    scene.play(stage);
    return stillOf(stage.window());
}

}  // namespace

int main(int argc, char** argv) {
    // Independent of the machine's settings, since times are shown in the locale's format and time zone.
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "vi_VN.UTF-8");
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{u"only"_s, u"The pictures with this in their names."_s, u"text"_s},
        {u"accent"_s, u"Another accent."_s, u"colour"_s, Colors::defaultAccent().name()}});
    options.addPositionalArgument(u"folder"_s, u"Where the pictures go."_s);
    options.process(application);
    if (options.positionalArguments().size() != 1)
        options.showHelp(2);
    const QDir folder(options.positionalArguments().constFirst());
    if (!folder.mkpath(u"."_s))
        qFatal("The folder cannot be made");
    const QTemporaryDir scratch;
    setDebugLogPath(scratch.filePath(u"debug.log"_s));

    const qreal scale = application.devicePixelRatio();
    const QString suffix = scale == 1 ? QString() : u"@%1x"_s.arg(scale);
    for (const bool dark : {false, true}) {
        const auto setAccent = [dark](const QColor& accent) {
            Theme::setAppearance({.dark = dark, .accent = accent, .reducedMotion = true});
        };
        const QColor usual(options.value(u"accent"_s));
        setAccent(usual);
        const auto save = [&](const QString& name, const auto& draw) {
            if (!name.contains(options.value(u"only"_s)))
                return;
            const QString file = name + (dark ? u"-dark"_s : u"-light"_s) + suffix + u".png"_s;
            if (!draw().save(folder.filePath(file)))
                qFatal("%s cannot be written", qUtf8Printable(file));
        };
        save(u"components"_s, pictureOfComponents);
        for (const Scene& scene : scenes()) {
            setAccent(scene.accent.value_or(usual));
            save(scene.name, [&] { return pictureOf(scene); });
        }
    }
}
