#pragma once

#include <QPixmap>
#include <QWidget>

#include <memory>

#include "ocr/ocr_test_support.h"
#include "ocr/screen_capture_service.h"
#include "support/program_on_fakes.h"
#include "ui/widget_support.h"

namespace tralio {

/// Looks for text for ever.
class HeldRecognizer final : public TextRecognizer {
public:
    void prepare() override {}
    QCoro::Task<QStringList> supportedLanguages(std::stop_token stop) override;
    QCoro::Task<std::vector<TextObservation>> recognize(ImageSource image, RecognitionRequest request,
                                                        std::stop_token stop) override;
};

/// The main view in its window on a backdrop, over a desktop of fakes and a stand-in for the model, and the
/// hands of a user before it. Nothing in it depends on the machine, the network or the time of day: the
/// stand-in is reached as a proxy, so that its port does not show in the settings.
class Stage final : public ProgramOnFakes {
public:
    Stage();
    ~Stage();

    /// Shows the main view. What the program finds is to be set before.
    void open();

    // What the user does. Every one of these returns when the window shows what follows from it.

    void type(const QString& text);
    void press(Qt::Key key);
    /// Clicks the first visible control with this title, or called so by screen readers.
    void click(const QString& name);
    void hover(QWidget* widget);
    /// Holds a file over the input.
    void dragFileOver();
    /// Scrolls until the section with this heading stands as far below the top as the first one does.
    void scrollTo(const QString& label);
    void scrollToEnd();

    [[nodiscard]] QList<Control*> controls(const QString& name) const;
    /// The first part of a kind.
    template <typename Part>
    [[nodiscard]] Part* find() const {
        return m_backdrop->findChild<Part*>();
    }
    [[nodiscard]] bool hasControl(const QString& name) const { return !controls(name).isEmpty(); }
    template <typename Condition>
    void wait(Condition condition) {
        if (!eventually(condition))
            qFatal("What a picture waits for never happens");
        settle();
    }

    [[nodiscard]] QPixmap picture();

private:
    void settle();

    HeldRecognizer m_recognizer;
    OCRService m_ocr{m_recognizer};
    DrawnRegion m_region;
    ScreenCaptureService m_captures{m_ocr, m_region, desktop.clock};
    std::unique_ptr<QWidget> m_backdrop;
};

/// A picture of a window in which nothing turns.
[[nodiscard]] QPixmap stillOf(QWidget& window);

}  // namespace tralio
