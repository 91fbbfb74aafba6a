#pragma once

#include <QWidget>

#include <functional>

namespace tralio {

class Button;
class Label;
class Reveal;
class UpdateService;

/// The strip below the header that offers a new version and shows the progress of its download.
class UpdateBanner final : public QWidget {
    Q_OBJECT

public:
    /// `updates` outlives the banner.
    UpdateBanner(UpdateService& updates, std::function<void()> dismiss, QWidget* parent = nullptr);

private:
    QWidget* offer();
    QWidget* actions();
    void refresh();

    UpdateService& m_updates;
    std::function<void()> m_dismiss;
    Reveal* m_reveal;
    Label* m_title;
    Label* m_notes;
    QWidget* m_progress;
    Label* m_percentage;
    Button* m_install;
    Button* m_close;
};

}  // namespace tralio
