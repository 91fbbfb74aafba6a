// An application whose selection can only be copied: its text is merely painted as highlighted, so
// that accessibility reports no selection, and never becomes PRIMARY. It copies the text by its menu (with
// `--menu`) or by Control+C, as the user would. Typed characters replace the text, as in an editor.
//
// With `--picture` it copies a picture of itself at once, with `--password` its text as a password manager
// does.
//
// Usage: selection-probe TEXT [--menu] [--picture] [--password]

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

class Probe final : public QMainWindow {
public:
    explicit Probe(QString& text) : m_text(text) {}

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!event->text().isEmpty() && event->text().front().isPrint())
            m_text = event->text();
    }

private:
    QString& m_text;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"selection-probe"_s);
    const QStringList arguments = QApplication::arguments();
    QString text = arguments.value(1);

    Probe window(text);
    window.setCentralWidget(new QLabel(text));
    window.resize(600, 200);

    QAction copy(u"&Copy"_s);
    QObject::connect(
        &copy, &QAction::triggered, &application, [&text] { QApplication::clipboard()->setText(text); });
    if (arguments.contains(u"--menu"_s)) {
        window.menuBar()->addMenu(u"&File"_s)->addAction(u"&Open"_s);
        window.menuBar()->addMenu(u"&Edit"_s)->addAction(&copy);
    } else {
        copy.setShortcut(QKeySequence::Copy);
        window.addAction(&copy);
    }
    window.show();
    if (arguments.contains(u"--picture"_s))
        QApplication::clipboard()->setPixmap(window.grab());
    if (arguments.contains(u"--password"_s)) {
        auto* password = new QMimeData;
        password->setText(text);
        password->setData(u"x-kde-passwordManagerHint"_s, "secret");
        QApplication::clipboard()->setMimeData(password);
    }
    return QApplication::exec();
}
