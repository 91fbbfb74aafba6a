"""The pages that tools/ocr-pictures draws: (class, language, width, scale, HTML)."""
import itertools

FONTS = ["Noto Sans", "Inter", "DejaVu Sans", "Liberation Sans", "Roboto", "Open Sans", "Noto Serif", "Cantarell"]
LIGHT = {"page": "#ffffff", "card": "#f3f4f6", "ink": "#1c1e21", "dim": "#5f6670", "rule": "#333", "accent": "#0b66d8"}
DARK = {"page": "#17191d", "card": "#262a31", "ink": "#e8eaed", "dim": "#a4abb6", "rule": "#8a9099", "accent": "#2f7de1"}
GREY = {"page": "#e9e6df", "card": "#ffffff", "ink": "#26221b", "dim": "#6b6457", "rule": "#57503f", "accent": "#a1421f"}
THEMES = [LIGHT, DARK, GREY]

GOODS = [("Cà phê sữa đá", "29.000"), ("Trà đào cam sả", "45.000"), ("Bánh mì thịt nướng", "35.000"),
         ("Nước ép dứa", "39.000"), ("Phở bò tái", "65.000"), ("Gỏi cuốn tôm", "48.000"), ("Chè đậu xanh", "25.000"),
         ("Sinh tố bơ", "42.000"), ("Bún chả Hà Nội", "55.000"), ("Cơm tấm sườn", "60.000"), ("Xôi gà", "30.000"),
         ("Sữa chua nếp cẩm", "27.000"), ("Bánh xèo", "70.000")]
STAFF = [("Nguyễn Thị Hạnh", "Kế toán", "Đà Nẵng"), ("Trần Quốc Bảo", "Kỹ thuật", "Cần Thơ"),
         ("Lê Minh Châu", "Thiết kế", "Huế"), ("Phạm Gia Hưng", "Bán hàng", "Hải Phòng"),
         ("Võ Thanh Tùng", "Kho vận", "Nha Trang"), ("Đặng Ngọc Ánh", "Nhân sự", "Vinh"),
         ("Bùi Xuân Mai", "Pháp lý", "Hà Nội")]
SERVERS = [("gateway-01", "running", "12%"), ("database-02", "stopped", "0%"), ("worker-07", "running", "84%"),
           ("cache-03", "waiting", "31%"), ("mail-relay", "running", "5%"), ("backup-node", "failed", "97%")]
CHATS = [[(0, "Chiều nay mấy giờ mình họp vậy?"), (1, "Ba giờ rưỡi, phòng nhỏ tầng hai nhé"),
          (0, "Ok, để mình mang máy chiếu"), (1, "Cảm ơn bạn nhiều!")],
         [(1, "Did the parcel arrive yet?"), (0, "Yes, this morning. The box was a bit wet."),
          (1, "Oh no, is everything fine inside?"), (0, "Nothing broken, thanks!")],
         [(0, "Em gửi anh bản vẽ mới rồi ạ"), (1, "Anh thấy rồi, cửa sổ bên trái hơi thấp"),
          (0, "Dạ để em sửa lại"), (1, "Trước thứ sáu là được"), (0, "Vâng ạ")],
         [(1, "Mai trời có mưa không nhỉ?"), (0, "Dự báo nói có, từ trưa"), (1, "Vậy mình đi buổi sáng nha")]]
BUTTONS = ["Lưu thay đổi", "Hủy bỏ", "Tiếp tục", "Đăng nhập", "Gửi phản hồi", "Save changes", "Delete account", "Try again",
           "Thêm vào giỏ", "Xem chi tiết"]
DIALOGS = [("Xóa cuộc trò chuyện?", "Tin nhắn sẽ bị xóa khỏi thiết bị này và không thể khôi phục.", ["Hủy", "Xóa"]),
           ("Bản cập nhật đã sẵn sàng", "Khởi động lại chương trình để dùng phiên bản mới nhất.", ["Để sau", "Khởi động lại"]),
           ("Replace existing file?", "A newer copy of this document is already in the folder.", ["Keep both", "Replace"]),
           ("Không lưu được tệp", "Ổ đĩa đã đầy. Hãy giải phóng dung lượng rồi thử lại.", ["Đóng", "Thử lại"])]
MENUS = [["Mở tệp...", "Mở gần đây", "Lưu thành...", "In tài liệu", "Đóng cửa sổ"],
         ["Undo typing", "Redo", "Cut", "Copy as plain text", "Paste", "Select all"],
         ["Sao chép liên kết", "Chuyển tiếp", "Ghim tin nhắn", "Dịch sang tiếng Việt", "Xóa ở phía tôi"]]
CAPTIONS = ["Ánh nắng cuối ngày trên thung lũng", "Where the river meets the sea", "Hành trình bắt đầu từ một bước chân",
            "Anh đừng quên lời hứa mùa hè năm ấy", "We should have left before the storm"]
MIXED = {
    "ru": ["Установите приложение Firefox и откройте вкладку Settings", "Файл README хранится в репозитории GitHub",
           "Скачайте драйвер для Windows с сайта Intel", "Команда использует Docker и Linux на сервере",
           "Подключите наушники Sony по Bluetooth"],
    "zh": ["请在Windows系统上安装Python解释器", "我们的服务器使用Linux和Docker部署", "打开Chrome浏览器并登录GitHub账号",
           "这个功能需要Android手机支持", "使用Excel表格导出数据"],
    "ja": ["Windowsの設定からBluetoothを選択してください", "このアプリはAndroidとiPhoneで使えます",
           "GitHubにコードを公開しました", "Excelファイルを開くことができません", "新しいLinuxサーバーを準備する"],
    "ko": ["새로운 Windows 업데이트를 설치하세요", "이 파일은 Excel 프로그램으로 열 수 있습니다", "GitHub 계정으로 로그인해 주세요",
           "서버에서 Docker 이미지를 실행합니다", "Bluetooth 이어폰을 Android 휴대폰에 연결"],
}
CJK_FONTS = {"zh": "Noto Sans CJK SC", "ja": "Noto Sans CJK JP", "ko": "Noto Sans CJK KR"}
NEWS = {"vi": ["Sáng nay, đoàn thuyền đã rời bến cảng cũ để", "bắt đầu mùa đánh bắt dài nhất trong năm.", "Nhiều gia đình đứng chờ trên cầu tàu từ sớm,",
               "mang theo cơm nắm và nước chè xanh.", "Theo ban quản lý, thời tiết tuần tới thuận lợi", "nhưng gió sẽ mạnh dần về cuối tháng."],
        "en": ["The old mill on the edge of town has been", "closed for thirty years, yet its wheel still", "turns whenever the stream runs high enough.",
               "Volunteers now want to open it again as a", "museum of bread, with an oven that visitors", "can use on the first Sunday of each month."],
        "more": ["Vé tham quan được bán tại cổng chính.", "Trẻ em dưới sáu tuổi không mất tiền.", "Xin giữ gìn vệ sinh chung.", "Không mang theo thú nuôi.",
                 "Giờ mở cửa từ tám giờ sáng.", "Điện thoại đặt chỗ ghi ở mặt sau."]}
SIDEBAR = ["Tổng quan", "Đơn hàng", "Khách hàng", "Sản phẩm", "Báo cáo", "Cài đặt"]
CODE = ["int main(int argc, char** argv) {", "    Options options = parse(argc, argv);", "    if (options.help)", "        return printHelp();",
        "    return run(options);", "}"]
FLUSH = [["Hello winter morning", "Bring the umbrella and", "Have some tea before"], ["In phong cho khách", "Mở gần đây"],
         ["Lan man trong vườn"], ["Đi chợ mua rau", "Kho hàng"]]


def page(theme, font, size, inside, padding=14):
    return (f"<body style=\"background:{theme['page']};color:{theme['ink']};font:{size}px '{font}';padding:{padding}px\">"
            f"{inside}</body>")


def cycle(*lists):
    return zip(*(itertools.cycle(values) for values in lists))


def tables():
    for number, (font, theme, size) in zip(range(10), cycle(FONTS, THEMES, [13, 15, 12, 14, 17])):
        rows = [GOODS, STAFF, SERVERS, GOODS[3:], STAFF[1:]][number % 5][:5 + number]
        border = f"{1 + number % 2}px solid {theme['rule']}"
        cell = f"border:{border};padding:{4 + number % 4 * 2}px {8 + number % 3 * 4}px"
        body = "".join("<tr>" + "".join(f"<td style='{cell}'>{text}</td>" for text in row) + "</tr>" for row in rows)
        yield "table", "vi", 560, 1, page(theme, font, size, f"<table style='border-collapse:collapse'>{body}</table>")


def buttons():
    colours = ["#1668dc", "#000000", "#c62828", "#2e7d32", "#6a3fc8", "#ffb300"]
    for number, (font, height, colour, theme) in zip(
            range(12), cycle(FONTS, [32, 36, 40, 44, 34, 28, 48, 38], colours, [LIGHT, GREY, LIGHT, DARK])):
        ink = "#1a1a1a" if colour == "#ffb300" else "#fff"
        size = 13 + number % 3
        row = "".join(
            f"<span style='display:inline-block;height:{height}px;line-height:{height}px;padding:0 18px;margin-right:12px;"
            f"border-radius:{(number * 3) % 11}px;background:{colour};color:{ink}'>{BUTTONS[(number + i * 3) % len(BUTTONS)]}</span>"
            for i in range(2))
        above = "<p style='margin:4px 0 12px'>Bạn có muốn giữ lại những thay đổi này không?</p>" if number % 3 else ""
        yield "button", "vi", 420, 1, page(theme, font, size, above + row, 16)


def chats():
    for number, (font, theme, chat, accent) in zip(
            range(8), cycle(FONTS, THEMES, CHATS, ["#0b84ff", "#128c7e", "#7a3ff2", "#0a6cff"])):
        size = 14 + number % 3
        bubbles = "".join(
            f"<div style='display:flex;justify-content:{'flex-end' if mine else 'flex-start'};margin:7px 0'>"
            f"<span style='padding:{6 + number % 3}px 13px;border-radius:16px;background:{accent if mine else theme['card']};"
            f"color:{'#fff' if mine else theme['ink']}'>{text}</span></div>" for mine, text in chat)
        yield "chat", "vi", 460, 1, page(theme, font, size, bubbles)


def dialogs():
    for number, (font, theme, (title, text, answers)) in zip(range(8), cycle(FONTS[1:], THEMES, DIALOGS)):
        row = "".join(
            f"<span style='display:inline-block;padding:{7 + number % 3}px 16px;margin-left:10px;border-radius:7px;"
            f"border:1px solid {theme['accent'] if i else theme['dim']};"
            f"background:{theme['accent'] if i else 'transparent'};color:{'#fff' if i else theme['ink']}'>{answer}</span>"
            for i, answer in enumerate(answers))
        inside = (f"<div style='background:{theme['card']};border:1px solid {theme['dim']};border-radius:10px;padding:18px'>"
                  f"<div style='font-size:{17 + number % 3}px;font-weight:600;margin-bottom:8px'>{title}</div>"
                  f"<div style='color:{theme['dim']};margin-bottom:16px'>{text}</div><div style='text-align:right'>{row}</div></div>")
        yield "dialog", "vi", 440, 1, page(theme, font, 13 + number % 3, inside)


def menus():
    for number, (font, theme, menu) in zip(range(9), cycle(FONTS[2:], [DARK, LIGHT, GREY], MENUS)):
        height = 28 + number * 2
        rows = "".join(
            f"<div style='height:{height}px;line-height:{height}px;padding:0 14px;"
            f"{'color:#fff;background:' + theme['accent'] if i == number % 4 else ''}'>{text}</div>" for i, text in enumerate(menu))
        inside = f"<div style='background:{theme['card']};border:1px solid {theme['dim']};width:250px'>{rows}</div>"
        yield "menu", "vi", 290, 1, page(theme, font, 13 + number % 3, inside)


def photograph(seed, colours, frequency=".004 .009"):
    """Something like a photograph: clouds of noise in colours, with grain."""
    a, b, c = colours
    return (f"<svg width=100% height=100% style='position:absolute;inset:0'><defs><filter id=f x=0 y=0 width=1 height=1>"
            f"<feTurbulence type=fractalNoise baseFrequency='{frequency}' numOctaves=6 seed={seed} />"
            f"<feColorMatrix values='{a} 0 0 0 {b}  0 {c} 0 0 {b}  0 0 1.1 0 .0  0 0 0 0 1'/></filter></defs>"
            f"<rect width=100% height=100% filter='url(#f)'/></svg>")


def captions():
    for number, (font, text, size) in zip(range(8), cycle(FONTS, CAPTIONS, [28, 34, 22, 40, 26])):
        back = photograph(number + 3, [(1.3, .05, .9), (.8, .2, 1.2), (1.6, -.2, 1.1)][number % 3],
                          [".004 .009", ".012", ".03 .02"][number % 3])
        shadow = ["text-shadow:0 0 4px #000,0 1px 3px #000", "-webkit-text-stroke:.5px #000;text-shadow:1px 1px 2px #000",
                  "text-shadow:2px 2px 3px #000"][number % 3]
        place = ["bottom:36px", "top:40%", "top:30px"][number % 3]
        inside = (f"<div style='position:relative;width:900px;height:500px;overflow:hidden'>{back}<div style='position:absolute;{place};"
                  f"left:0;right:0;text-align:center;color:#fff;font-weight:600;font-size:{size}px;{shadow}'>{text}</div></div>")
        yield "caption", "vi", 900, 1, page(LIGHT, font, size, inside, 0)


def mixed():
    for language, lines in MIXED.items():
        for number, (font, size, theme) in zip(range(5), cycle(FONTS, [16, 20, 15, 18, 24], THEMES)):
            texts = [lines[number]] if number % 2 else [lines[number], lines[(number + 2) % 5]]
            inside = "".join(f"<div style='margin:4px 0'>{text}</div>" for text in texts)
            family = CJK_FONTS.get(language, font)
            yield f"mixed-{language}", language, 620, 1, page(theme, family, size, inside)


def textless():
    for number in range(10):
        theme = THEMES[number % 3]
        if number < 3:
            inside = f"<div style='height:{120 + 80 * number}px'></div>"
            theme = {**theme, "page": ["#808080", "#d8d8d8", "#2b5f8c"][number]}
        elif number < 6:
            shapes = "".join(f"<div style='position:absolute;left:{40 + i * 83}px;top:{30 + i * 37 % 110}px;width:{30 + i * 9}px;"
                             f"height:{24 + i * 7}px;border-radius:{i * number}px;background:{theme['accent'] if i % 2 else theme['dim']}'></div>"
                             for i in range(5))
            inside = f"<div style='position:relative;height:220px;background:linear-gradient({theme['page']},{theme['card']})'>{shapes}</div>"
        else:
            inside = (f"<div style='position:relative;height:360px'>"
                      f"{photograph(number, [(1.4, 0, 1), (.9, .1, 1.3)][number % 2], ['.01', '.05 .02', '.2', '.004'][number % 4])}</div>")
        yield "textless", "vi", 520, 1, page(theme, FONTS[0], 14, inside, 0)


def columns():
    for number, (font, theme, size) in zip(range(8), cycle(FONTS, THEMES, [13, 14, 15])):
        kinds = [["vi", "en"], ["en", "more"], ["vi", "en", "more"]][number % 3]
        def column(lines, style=""):
            return f"<div style='white-space:nowrap;{style}'>" + "".join(f"<div>{line.replace(' ', '&nbsp;') if line.startswith(' ') else line}</div>" for line in lines) + "</div>"
        if number == 6:
            inside = column(SIDEBAR, f"width:150px;padding:8px;background:{theme['card']};line-height:1.9") + column(NEWS["vi"], "line-height:1.7")
        elif number == 7:
            inside = column(SIDEBAR, f"width:170px;border-right:1px solid {theme['dim']}") + column(CODE, "font-family:DejaVu Sans Mono")
        else:
            inside = "".join(column(NEWS[kind]) for kind in kinds)
        yield "columns", "vi", 400 + 330 * (len(kinds) if number < 6 else 1), 1, page(
            theme, font, size, f"<div style='display:flex;gap:{44 + number % 3 * 16}px;line-height:1.5'>{inside}</div>")


def headings():
    titles = ["Mùa gặt", "Big sale today", "Hội sách", "Giảm giá", "Open house", "Chợ đêm"]
    for number, (font, theme, size) in zip(range(6), cycle(FONTS, THEMES, [90, 72, 110, 60])):
        text = NEWS[["vi", "en", "more"][number % 3]]
        inside = (f"<div style='font-size:{size}px;line-height:1.15;font-weight:{700 if number % 2 else 400}'>{titles[number]}</div>"
                  + "".join(f"<div style='margin-top:5px'>{line}</div>" for line in text))
        yield "heading", "vi", 700, 1, page(theme, font, 13, inside)


def papers():
    """Pages as a scanner saves them, with the grain of paper, and others that were saved with losses."""
    grain = ("<svg width=100% height=100% style='position:absolute;inset:0;opacity:.09'><filter id=g>"
             "<feTurbulence type=fractalNoise baseFrequency=.8 numOctaves=2 /><feColorMatrix type=saturate values=0 /></filter>"
             "<rect width=100% height=100% filter='url(#g)'/></svg>")
    for number, (font, paper, size) in zip(range(6), cycle(FONTS, ["#f6f2e8", "#fff", "#eceae4"], [17, 15, 19])):
        lines = NEWS["vi"] + NEWS["en"] + NEWS["more"]
        inside = "".join(f"<div style='line-height:1.5'>{line}</div>" for line in lines)
        for kind, over in (("scan", grain), ("jpeg", "")):
            yield kind, "vi", 520, 1, page({"page": paper, "ink": "#222"}, font, size, inside + over, 20)


def flush():
    """Cut at the left and above as closely as the letters allow."""
    for _, (font, theme, size, lines) in zip(range(8), cycle(FONTS, THEMES, [16, 20, 14], FLUSH)):
        trimmed = "text-box:trim-both cap alphabetic;margin-left:-.05em;width:max-content"
        inside = "".join(f"<div style='{trimmed};margin-bottom:9px'>{text}</div>" for text in lines)
        yield "flush", "vi", 260, 1, page(theme, font, size, inside, 0)


def pages():
    for group in (tables, buttons, chats, dialogs, menus, captions, mixed, textless, columns, headings, papers, flush):
        yield from group()
