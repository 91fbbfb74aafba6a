#include "ui/stage.h"

#include <QPainter>

#include "ui/kit/window_frame.h"
#include "ui/main/main_view.h"

namespace tralio {
namespace {

/// A desktop's ground, with room around the window as in the drawings.
class Backdrop final : public QWidget {
public:
    Backdrop() { setFixedSize(610, 669); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Theme::current().appearance().dark ? QColor(0x363B45) : QColor(0xD5DBE3));
    }
};

}  // namespace

Stage::Stage() {
    qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(model.port()));
    desktop.permissions.accessibility = true;
    desktop.permissions.screenCapture = true;
    store.setValue(u"hasCompletedOnboarding"_s, true);
    store.setValue(u"app_setting_base_url"_s, u"http://model.example.com/v1"_s);
}

Stage::~Stage() = default;

void Stage::open() {
    auto* content = new MainView({store, hotKeys, ai, captures, ocr, speech, updates, appState,
                                     desktop.pasteboard, desktop.clock, keyCode},
        {.openURL = [this](const QUrl& url) { opened += url; }, .quit = [this] { ++quits; }});
    m_backdrop = std::make_unique<Backdrop>();
    auto* frame = new WindowFrame(WindowFrame::Edges::floating, m_backdrop.get());
    frame->move(0, 4);
    frame->setContent(content);
    m_backdrop->show();
    m_backdrop->activateWindow();
    wait([this] { return m_backdrop->isActiveWindow(); });
}

void Stage::settle() {
    // A change is shown in the next turn, and then every turn carries it one layout further up.
    for (int turn = 0; turn < 20; ++turn)
        (void)nextTurn();
}

QList<Control*> Stage::controls(const QString& name) const {
    return visibleControls(*m_backdrop, name);
}

void Stage::clickControl(const QString& name) {
    const QList<Control*> found = controls(name);
    if (found.isEmpty())
        qFatal("There is no control %s", qUtf8Printable(name));
    QTest::mouseClick(found.constFirst(), Qt::LeftButton);
    settle();
}

void Stage::type(const QString& text) {
    // As an input method hands over a word, since keys have no name for most letters.
    QInputMethodEvent input;
    input.setCommitString(text);
    QApplication::sendEvent(QApplication::focusWidget(), &input);
    settle();
}

void Stage::pressKey(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key);
    settle();
}

}  // namespace tralio
