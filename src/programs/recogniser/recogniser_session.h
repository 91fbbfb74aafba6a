#pragma once

#include <chrono>
#include <functional>

#include "platform/linux/helpers/recogniser_protocol.h"
#include "programs/recogniser/reading/engine_pool.h"

namespace tralio {

/// The work of the helper process: what it answers to each request.
class RecogniserSession final {
public:
    using Send = std::function<void(const recogniser_protocol::Reply&)>;

    explicit RecogniserSession(Send send);

    void handle(const recogniser_protocol::Request& request);

    /// Loads one more engine that may be wanted soon. False when there is none left to load, or none was
    /// asked for.
    bool prepareFurther();

private:
    void answer(const recogniser_protocol::PrepareRequest& request);
    void answer(const recogniser_protocol::LanguagesRequest& request);
    void answer(const recogniser_protocol::RecognizeRequest& request);

    [[nodiscard]] const QStringList& installedPacks();
    /// Within a block that takes its time: who has nothing to say for long is taken for hung.
    void showLife();
    void tellProgress(qsizetype lines);

    Send m_send;
    EnginePool m_engines{[this] { showLife(); }};
    qsizetype m_linesRead = 0;
    std::chrono::steady_clock::time_point m_told;
    QStringList m_installedPacks;
    bool m_isPreparing = false;
};

}  // namespace tralio
