#include "ui/onboarding/onboarding_pages.h"

#include "hotkeys/shortcut_words.h"
#include "ui/kit/badge.h"
#include "ui/kit/emblem.h"
#include "ui/kit/icon_tile.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/key_cap.h"
#include "ui/kit/label.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/theme.h"
#include "ui/kit/tooltip.h"
#include "ui/onboarding/permission_step.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr QMargins cardPadding{12, 12, 12, 12};
constexpr BadgeStyle recommended{18, 6, radius::chip, text::smallCaption.with(Weight::heavy),
    ColorRole::accentBadge, ColorRole::accentText};

Label* wrapping(
    const QString& text, const TextStyle& style = text::caption, ColorRole role = ColorRole::secondary) {
    auto* label = new Label(text, style, role);
    label->setWraps();
    if (const QString shortcuts = shortcutsInWords(text); !shortcuts.isEmpty())
        setTooltip(label, shortcuts);
    return label;
}

/// Centred text, with margins that put the line breaks where they read well.
QLayout* centred(Label* text, int margin = 0) {
    text->setAlignment(Qt::AlignHCenter);
    return row({.padding = {margin, 0, margin, 0}}, {text});
}

QLayout* pageTitle(const QString& title) {
    return centred(new Label(title, text::onboardingTitle));
}

QLayout* pageSubtitle(const QString& subtitle, int margin = 0) {
    return centred(wrapping(subtitle, text::subtitle), margin);
}

QLayout* closingLine(const QString& line, int margin = 0, ColorRole role = ColorRole::secondary) {
    return centred(wrapping(line, text::caption, role), margin);
}

Surface* card(QLayout* content) {
    return filled(new Surface(ColorRole::surface1, ColorRole::border15, radius::section), content);
}

QWidget* page(std::initializer_list<StackItem> items) {
    return filled(
        new QWidget, column({.padding = {24, 16, 24, 16}}, {Stretch{}, column({}, items), Stretch{}}));
}

/// The tint behind an icon of this colour.
ColorRole tileOf(ColorRole color) {
    switch (color) {
        case ColorRole::orangeIcon:
            return ColorRole::orangeBadge;
        case ColorRole::blue:
            return ColorRole::blueBadge;
        case ColorRole::purple:
            return ColorRole::purpleBadge;
        default:
            return ColorRole::accentBadge;
    }
}

QWidget* welcomeFeatureRow(const QString& icon, ColorRole color, const QString& title, const QString& desc) {
    return card(row({.spacing = 12, .padding = cardPadding},
        {new IconTile({icon, 16}, color, tileOf(color)),
            {column({.spacing = 2}, {new Label(title, text::cardTitle), wrapping(desc)}), 1}}));
}

QLayout* aiBenefitRow(const QString& icon, const QString& title, const QString& desc) {
    constexpr TextStyle titleStyle = text::headline.with(Weight::semibold);
    return row({.spacing = 20},
        {{new IconView({icon, 16}, ColorRole::accentIcon), Qt::AlignTop},
            {column({.spacing = 2}, {new Label(title, titleStyle), wrapping(desc)}), 1}});
}

KeyCap* shortcutBadge(const QString& text) {
    return new KeyCap(text);
}

QWidget* shortcutRow(const QString& title, const QString& modifier, const QString& key, const QString& desc) {
    auto* keys = filled(new QWidget,
        row({.spacing = 6},
            {Stretch{}, shortcutBadge(modifier), new Label(u"+"_s, text::caption, ColorRole::secondary),
                shortcutBadge(key)}));
    keys->setFixedWidth(132);
    return card(row({.spacing = 16, .padding = {14, 12, 14, 12}},
        {{column({.spacing = 2}, {new Label(title, text::cardTitle), wrapping(desc)}), 1}, keys}));
}

/// The model's name on a tinted head, above its benefits.
QWidget* modelCard(QLayout* name, QLayout* benefits) {
    auto* head = filled(new QWidget, name);
    Surface* surface = card(column({}, {head, benefits}));
    surface->setHead(head, ColorRole::accentTint);
    return surface;
}

}  // namespace

QWidget* step1Welcome() {
    return page({
        {new Emblem(84, 42), Qt::AlignHCenter},
        Gap{16},
        pageTitle(u"Chào mừng đến với Tralio"_s),
        Gap{6},
        pageSubtitle(
            u"Ứng dụng dịch thuật AI siêu nhẹ, chạy thường trực ngay trên Menu Bar macOS của bạn."_s, 66),
        Gap{24},
        welcomeFeatureRow(u"bolt.fill"_s, ColorRole::orangeIcon, u"Siêu nhẹ & Mở tức thì"_s,
            u"Dung lượng RAM < 30MB, không chiếm chỗ Dock, phản hồi dưới 0.3s."_s),
        Gap{8},
        welcomeFeatureRow(u"text.cursor"_s, ColorRole::blue, u"Tralio bôi đen toàn cục"_s,
            u"Bôi đen văn bản ở ứng dụng bất kỳ rồi nhấn ⌥D để dịch ngay."_s),
        Gap{8},
        welcomeFeatureRow(u"viewfinder"_s, ColorRole::purple, u"Chụp màn hình OCR Apple Vision"_s,
            u"Quét chữ trong ảnh, video, game, tài liệu khóa bằng phím tắt ⌥S."_s),
    });
}

QWidget* step2Permissions(PermissionStep* accessibility, PermissionStep* screenCapture) {
    return page({
        pageTitle(u"Cấp Quyền Hệ Thống macOS"_s),
        Gap{6},
        pageSubtitle(u"Để kích hoạt phím tắt toàn cục và chụp quét chữ OCR, macOS cần bạn cấp 2 quyền cơ bản "
                     "dưới đây:"_s,
            66),
        Gap{24},
        accessibility,
        Gap{12},
        screenCapture,
        Gap{16},
        closingLine(u"💡 Gợi ý: Sau khi bạn gạt bật công tắc trong Cài đặt hệ thống, app sẽ tự động nhảy sang "
                    "màu xanh ngay lập tức."_s,
            72),
    });
}

QWidget* step3AIModel() {
    auto* name = new Label(u"Model AI Mặc Định Của Tralio (TranslateGemma-27B)"_s, text::cardTitle);
    auto* free = new Label(u"Miễn phí 100%"_s, text::caption.with(Weight::semibold), ColorRole::green);
    auto* head = row({.spacing = 12, .padding = {14, 12, 14, 12}},
        {new IconTile({u"sparkles"_s, 16}, ColorRole::accentIcon, ColorRole::accentBadge),
            {column({.spacing = 4},
                 {name,
                     row({.spacing = 8},
                         {new Badge(recommended, u"KHUYÊN DÙNG — ĐÃ CÀI SẴN MẶC ĐỊNH"_s), free, Stretch{}})}),
                1}});
    auto* benefits = column({.spacing = 14, .padding = {22, 14, 14, 14}},
        {aiBenefitRow(u"checkmark.seal.fill"_s, u"Tralio chuẩn xác & Văn phong tự nhiên"_s,
             u"Được huấn luyện chuyên sâu cho cặp ngôn ngữ Anh ➔ Việt, đọc mượt mà như người bản xứ."_s),
            aiBenefitRow(u"bolt.badge.clock.fill"_s, u"Tốc độ siêu nhanh & Ổn định"_s,
                u"Hạ tầng máy chủ dịch chuyên dụng, phản hồi tức thì dưới 1 giây."_s),
            aiBenefitRow(u"lock.open.fill"_s, u"Sử dụng ngay — Không cần API Key"_s,
                u"Bạn không cần đăng ký tài khoản, không cần thẻ visa hay cấu hình phức tạp."_s)});
    return page({
        pageTitle(u"Mô Hình AI Tralio Thuật"_s),
        Gap{6},
        pageSubtitle(u"Tralio đã tích hợp sẵn công nghệ AI dịch thuật chuyên sâu tối ưu nhất cho bạn:"_s),
        Gap{24},
        modelCard(head, benefits),
        Gap{16},
        closingLine(u"Người dùng nâng cao: Bạn vẫn có thể tùy biến sang Google Gemini, DeepSeek, OpenAI hoặc "
                    "Ollama (Local) bất kỳ lúc nào trong tab Cài đặt."_s,
            41),
    });
}

QWidget* step4Shortcuts(Label* shortcutsOfThisMachine) {
    return page({
        pageTitle(u"Phím Tắt & Cách Dùng Nhanh"_s),
        Gap{6},
        pageSubtitle(u"Ghi nhớ 2 phím tắt cốt lõi này để dịch văn bản bất kỳ lúc nào trên Mac:"_s),
        Gap{24},
        shortcutRow(u"Tralio Bôi Đen Tức Thì"_s, u"⌥ Option"_s, u"D"_s,
            u"Bôi đen bất kỳ đoạn chữ nào (web, tài liệu, chat, code) → Nhấn ⌥D để dịch ngay lập "
            "tức."_s),
        Gap{8},
        shortcutRow(u"Chụp Màn Hình & Tralio OCR"_s, u"⌥ Option"_s, u"S"_s,
            u"Nhấn ⌥S → Kéo chuột khoanh vùng chứa chữ trên ảnh, video, game, PDF khóa để trích xuất & "
            "dịch."_s),
        Gap{8},
        shortcutRow(u"Tralio Trong Cửa Sổ Tralio"_s, u"⌘ Cmd"_s, u"Return"_s,
            u"Nhập văn bản vào ô dịch và bấm ⌘↵ hoặc nút Tralio để dịch tức thì."_s),
        Gap{12},
        centred(shortcutsOfThisMachine),
        Gap{12},
        closingLine(
            u"🎉 Bạn đã sẵn sàng! Chúc bạn có trải nghiệm dịch thuật tuyệt vời."_s, 0, ColorRole::text),
    });
}

}  // namespace tralio
