#include "engine/provider_preset.h"

#include "engine/hosts.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString https(QStringView host, QStringView path) {
    return u"https://%1%2"_s.arg(host, path);
}

}  // namespace

const QList<ProviderPreset>& ProviderPreset::presets() {
    static const QString gateway = https(hosts::gateway, u"/v1");
    static const QList<ProviderPreset> presets{
        {u"kavo"_s, u"Kavo (Gemini 3.8 Flash)"_s, gateway, u"kavo/gemini-3.8-flash"_s,
            u"API Kavo AI Tralio thuật chuyên sâu (Gemini 3.8 Flash tốc độ cao)"_s},
        {u"kavo_translategemma"_s, u"Kavo (TranslateGemma 27B)"_s, gateway, u"kavo/translategemma-27b"_s,
            u"API Kavo AI Tralio thuật chuyên sâu (TranslateGemma 27B dịch thuật đa ngữ chuẩn)"_s},
        {u"kavo_sonnet"_s, u"Kavo (Claude Sonnet 4.5)"_s, gateway, u"kavo/claude-sonnet-4.5"_s,
            u"API Kavo AI Tralio thuật chuyên sâu (Claude Sonnet 4.5)"_s},
        {u"openai"_s, u"OpenAI"_s, https(hosts::openAI, u"/v1"), u"gpt-4o-mini"_s,
            u"Yêu cầu OpenAI API Key (sk-...)"_s},
        {u"gemini"_s, u"Google Gemini (OpenAI Format)"_s, https(hosts::googleGemini, u"/v1beta/openai"),
            u"gemini-2.5-flash"_s, u"Dùng API Key lấy từ Google AI Studio"_s},
        {u"deepseek"_s, u"DeepSeek"_s, https(hosts::deepSeek, {}), u"deepseek-chat"_s,
            u"Dùng DeepSeek API Key (sk-...)"_s},
        {u"groq"_s, u"Groq (Siêu nhanh)"_s, https(hosts::groq, u"/openai/v1"), u"llama-3.3-70b-versatile"_s,
            u"Dùng Groq API Key (gsk_...)"_s},
        {u"openrouter"_s, u"OpenRouter"_s, https(hosts::openRouter, u"/api/v1"), u"google/gemini-2.5-flash"_s,
            u"Dùng OpenRouter API Key (sk-or-...)"_s},
        {u"ollama"_s, u"Ollama (Chạy Offline máy cá nhân)"_s, u"http://%1/v1"_s.arg(hosts::ollama),
            u"qwen2.5:latest"_s, u"Không cần API Key (chạy Ollama trên máy port 11434)"_s},
        {u"custom"_s, u"Tùy chỉnh (Custom)"_s, u""_s, u""_s, u"Nhập endpoint tương thích OpenAI bất kỳ"_s},
    };
    return presets;
}

}  // namespace tralio
