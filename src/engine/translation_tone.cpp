#include "engine/translation_tone.h"

namespace tralio {

// Constant-initialised, since other translation units may use the tones while they initialise their own
// statics.
constinit const TranslationTone TranslationTone::natural{u"Tự nhiên",
    u"Tralio theo phong cách tự nhiên, trôi chảy, gần gũi với đời sống hàng ngày của người bản xứ."};

constinit const TranslationTone TranslationTone::technical{u"Kỹ thuật / IT",
    u"Tralio chuẩn xác theo thuật ngữ chuyên ngành Công nghệ thông tin / Kỹ thuật. "
    u"Giữ nguyên các thuật ngữ kỹ thuật phổ biến hoặc tên hàm/biến nếu cần."};

constinit const TranslationTone TranslationTone::formal{u"Trang trọng",
    u"Tralio theo văn phong trang trọng, học thuật, lịch sự và chuẩn mực văn phòng / tài liệu."};

constinit const TranslationTone TranslationTone::concise{
    u"Ngắn gọn", u"Tralio ngắn gọn, súc tích, đi thẳng vào ý chính, loại bỏ các từ đệm không cần thiết."};

TranslationTone::TranslationTone() : TranslationTone(natural) {}

std::array<TranslationTone, 4> TranslationTone::allCases() {
    return {natural, technical, formal, concise};
}

std::optional<TranslationTone> TranslationTone::fromRawValue(QStringView rawValue) {
    for (const TranslationTone& tone : allCases())
        if (tone.m_rawValue == rawValue)
            return tone;
    return std::nullopt;
}

}  // namespace tralio
