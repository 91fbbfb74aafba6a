#include "ui/settings/permission_cards.h"

#include "common/on_change.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/settings/settings_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

PermissionCard::PermissionCard(const Words& granted, const Words& missing, QWidget* parent)
    : QWidget(parent), m_grantedWords(granted), m_missingWords(missing) {
    m_icon = new IconView({}, ColorRole::green);
    m_title = new Label({}, text::blockTitle);
    m_line = new Label({}, text::caption, ColorRole::secondary);
    m_line->setWraps();
    m_request = new Button(button::redSmall, {.title = u"Cấp quyền"_s});
    connect(m_request, &Button::clicked, this, &PermissionCard::requested);
    m_surface = filled(new Surface(ColorRole::greenTint, ColorRole::greenTintEdge, radius::block),
        row({.spacing = 10, .padding = {10, 10, 10, 10}},
            {m_icon, StackItem(column({.spacing = 2}, {m_title, m_line}), 1), m_request}));
    filled(this, column({}, {m_surface}));
}

void PermissionCard::setGranted(bool granted) {
    const Words& words = granted ? m_grantedWords : m_missingWords;
    const ColorRole ink = granted ? ColorRole::green : ColorRole::red;
    m_surface->setFill(granted ? ColorRole::greenTint : ColorRole::redTint);
    m_surface->setEdge(granted ? ColorRole::greenTintEdge : ColorRole::redTintCardEdge);
    m_icon->setIcon(
        {.name = granted ? u"checkmark.shield.fill"_s : u"exclamationmark.shield.fill"_s, .pointSize = 16});
    m_icon->setColor(ink);
    m_title->setText(words.title);
    m_title->setColor(ink);
    m_line->setText(words.line);
    setAccessibleName(words.title);
    m_request->setSpokenCaption(words.title);
    if (granted)
        restFocus(*this, *m_request);
    m_request->setVisible(!granted);
}

bool PermissionCard::isGranted() const {
    return m_request->isHidden();
}

PermissionCards::PermissionCards(SettingsState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    m_accessibility = new PermissionCard({.title = u"Quyền Trợ năng (Accessibility): Đã bật"_s,
                                             .line = u"Sẵn sàng nhận diện phím tắt và văn bản bôi đen."_s},
        {.title = u"Cần cấp quyền Trợ năng (Accessibility)"_s,
            .line = u"Để tự động lấy văn bản khi bấm phím tắt dịch bôi đen."_s});
    m_screenCapture = new PermissionCard({.title = u"Quyền Ghi màn hình (OCR): Đã bật"_s,
                                             .line = u"Sẵn sàng chụp khoanh vùng màn hình và OCR."_s},
        {.title = u"Cần cấp quyền Ghi màn hình (Screen Recording)"_s,
            .line = u"Để quét và bóc tách chữ từ màn hình bằng Apple Vision."_s});
    connect(
        m_accessibility, &PermissionCard::requested, this, [this] { m_state.requestAccessibility(); });
    connect(m_screenCapture, &PermissionCard::requested, this, [this] { m_state.requestScreenCapture(); });
    filled(this, column({.spacing = 8}, {m_accessibility, m_screenCapture}));
    onAnyChange(m_state, this, [this] { refresh(); });
    refresh();
}

void PermissionCards::focusMissing() {
    (m_accessibility->isGranted() ? m_screenCapture : m_accessibility)->setFocus(Qt::TabFocusReason);
}

void PermissionCards::refresh() {
    m_accessibility->setGranted(m_state.isAccessibilityGranted());
    m_screenCapture->setGranted(m_state.isScreenCaptureGranted());
}

}  // namespace tralio
