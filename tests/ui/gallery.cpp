// Shows the parts of the kit in their states, or saves a picture of them:
//     tralio-gallery [--page components|panel] [--dark] [--accent #rrggbb] [--scale 2] [picture.png]
#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <memory>

#include "gallery_pages.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    // The scale has to stand before the application does, so it is looked for by hand.
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--scale") == 0) {
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
        }
    }
    const QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{u"page"_s, u"components or panel."_s, u"name"_s, u"components"_s},
                        {u"dark"_s, u"The dark scheme."_s},
                        {u"accent"_s, u"Another accent."_s, u"colour"_s},
                        {u"scale"_s, u"Device pixel ratio."_s, u"factor"_s}});
    options.addPositionalArgument(u"picture"_s, u"A PNG to save instead of showing the window."_s);
    options.process(application);

    tralio::Appearance appearance{.dark = options.isSet(u"dark"_s)};
    if (options.isSet(u"accent"_s)) {
        appearance.accent = QColor(options.value(u"accent"_s));
    }
    tralio::Theme::setAppearance(appearance);

    const std::unique_ptr<QWidget> page(options.value(u"page"_s) == u"panel"_s ? tralio::panelPage()
                                                                               : tralio::componentsPage());
    if (const QStringList pictures = options.positionalArguments(); !pictures.isEmpty()) {
        QApplication::setCursorFlashTime(0);
        // Later, when the window is active, its layouts have settled and a tooltip has come.
        QTimer::singleShot(900, page.get(), [&page, picture = pictures.constFirst()] {
            QCoreApplication::exit(page->grab().save(picture) ? 0 : 1);
        });
    }
    page->show();
    return QApplication::exec();
}
