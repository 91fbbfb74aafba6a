#pragma once

#include <functional>
#include <memory>

#include "platform/linux/ocr/engine_pool.h"
#include "platform/linux/ocr/helper_protocol.h"

namespace tralio {

/// The work of the helper process: what it answers to each request.
class HelperSession final {
public:
    using Send = std::function<void(const helper_protocol::Reply&)>;

    explicit HelperSession(Send send);

    void handle(const helper_protocol::Request& request);

    /// Loads one more engine that may be wanted soon. False when there is none left to load, or none was
    /// asked for.
    bool prepareFurther();

private:
    void answer(const helper_protocol::PrepareRequest& request);
    void answer(const helper_protocol::LanguagesRequest& request);
    void answer(const helper_protocol::RecognizeRequest& request);

    [[nodiscard]] EnginePool& engines(bool usesDictionaries);
    [[nodiscard]] const QStringList& installedPacks();

    Send m_send;
    std::unique_ptr<EnginePool> m_engines;
    QStringList m_installedPacks;
    bool m_isPreparing = false;
};

}  // namespace tralio
