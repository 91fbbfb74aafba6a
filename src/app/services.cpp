#include "app/services.h"

namespace tralio {
namespace {

Services* instance = nullptr;

}  // namespace

Services::Services(const QString& storePath) : store(storePath) {
    instance = this;
}

Services::~Services() {
    instance = nullptr;
}

Services& Services::current() {
    Q_ASSERT(instance);
    return *instance;
}

AppState& AppState::shared() {
    return Services::current().appState;
}

HotKeyService& HotKeyService::shared() {
    return Services::current().hotKeys;
}

AIService& AIService::shared() {
    return Services::current().ai;
}

OCRService& OCRService::shared() {
    return Services::current().ocr;
}

ScreenCaptureService& ScreenCaptureService::shared() {
    return Services::current().captures;
}

SpeechService& SpeechService::shared() {
    return Services::current().speech;
}

}  // namespace tralio
