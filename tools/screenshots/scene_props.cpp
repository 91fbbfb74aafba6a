#include "scene_props.h"

#include <QApplication>
#include <QDateTime>
#include <QDragEnterEvent>
#include <QEnterEvent>
#include <QMimeData>
#include <QScrollBar>

#include "history/translation_history_json.h"
#include "ui/kit/label.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage.h"

namespace tralio {

using namespace Qt::StringLiterals;

const QString input =
    u"The best interface is the one you stop noticing. It answers the question you had, keeps your place, "
    u"and "
    "then gets quietly out of the way."_s;
const QString output =
    u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa. Nó giải đáp đúng điều bạn thắc mắc, giữ "
    "nguyên chỗ bạn đang làm dở, rồi lặng lẽ nhường đường."_s;

const AppUpdateInfo offer{.version = u"1.1.0"_s,
    .releaseNotes =
        u"Dịch đoạn văn dài nhanh hơn, nhận diện chữ dọc tiếng Nhật chính xác hơn và sửa lỗi phím tắt "
        "ngừng hoạt động sau khi khóa màn hình."_s,
    .downloadUrl = u"https://update.example.com/Tralio-1.1.0.zip"_s,
    .pubDate = {}};

void offerUpdate(Stage& stage) {
    stage.model.replies(StandInReply::withBody(200, offer.toJson()));
    stage.updates.checkForUpdates(false);
    stage.wait([&] { return stage.updates.isUpdateAvailable(); });
}

static TranslationItem item(const QString& time, const QString& from, const QString& to, const QString& tone,
    const QString& source, const QString& translation) {
    return {.id = QUuid::createUuidV5(QUuid(), source),
        .sourceText = source,
        .translatedText = translation,
        .sourceLang = from,
        .targetLang = to,
        .tone = tone,
        .timestamp = timestampOf(std::chrono::system_clock::time_point(
            std::chrono::milliseconds(QDateTime::fromString(time, Qt::ISODate).toMSecsSinceEpoch())))};
}

QByteArray history() {
    return encodeHistory({
        item(u"2025-01-02T09:41:00"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s,
            u"Could you send me the signed contract before Friday?"_s,
            u"Bạn có thể gửi cho tôi bản hợp đồng đã ký trước thứ Sáu không?"_s),
        item(u"2025-01-02T09:05:00"_s, u"Tiếng Việt"_s, u"Tiếng Nhật"_s, u"Trang trọng"_s,
            u"Xin lỗi vì đã trả lời muộn, tôi sẽ gửi bản báo cáo trước chiều thứ Sáu."_s,
            u"返信が遅くなり申し訳ございません。金曜日の午後までに報告書をお送りいたします。"_s),
        item(u"2025-01-02T08:22:00"_s, u"Tự động phát hiện"_s, u"Tiếng Việt"_s, u"Kỹ thuật / IT"_s,
            u"The worker holds a lease on the queue entry and renews it every thirty seconds. If the process "
            "dies, the lease expires and another worker picks the entry up; writes that were acknowledged "
            "are "
            "kept, and everything after them is replayed from the journal."_s,
            u"Worker giữ một lease trên mục trong hàng đợi và gia hạn mỗi ba mươi giây. Nếu tiến trình chết, "
            "lease sẽ hết hạn và một worker khác nhận lại mục đó; các thao tác ghi đã được xác nhận vẫn được "
            "giữ, còn mọi thao tác sau đó được phát lại từ nhật ký để trạng thái luôn nhất quán."_s),
        item(u"2024-12-31T23:59:00"_s, u"Tiếng Pháp"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s,
            u"Bonne année à toutes et à tous !"_s, u"Chúc mừng năm mới tất cả mọi người!"_s),
        item(u"2024-12-28T16:20:00"_s, u"Tiếng Hàn"_s, u"Tiếng Anh"_s, u"Ngắn gọn"_s,
            u"내일 회의는 오후 세 시로 변경되었습니다. 자료는 오전 중에 공유해 주세요."_s,
            u"Tomorrow's meeting moved to 3 p.m. Please share the material in the morning."_s),
    });
}

void hover(Stage& stage, QWidget* widget) {
    const QPointF middle = widget->rect().center();
    QEnterEvent enter(middle, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &enter);
    stage.settle();
}

void dragFileOver(Stage& stage) {
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/tmp/menu.png"_s)});
    QDragEnterEvent enter({}, Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(stage.find<MultilineEnterInputView>()->parentWidget(), &enter);
    stage.settle();
}

void scrollTo(Stage& stage, const QString& label) {
    auto* panel = stage.find<ScrollPanel>();
    for (const Label* candidate : panel->findChildren<Label*>())
        if (candidate->text() == label)
            panel->verticalScrollBar()->setValue(candidate->mapTo(panel->widget(), QPoint()).y() - 26);
    stage.settle();
}

void scrollToEnd(Stage& stage) {
    QScrollBar* bar = stage.find<ScrollPanel>()->verticalScrollBar();
    bar->setValue(bar->maximum());
    stage.settle();
}

}  // namespace tralio
