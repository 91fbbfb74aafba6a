#pragma once

#include <QStringList>

#include <map>
#include <memory>
#include <utility>

#include "programs/recogniser/reading/text_engine.h"

namespace tralio {

/// The engines, each loaded when it is first asked for and kept.
class EnginePool final {
public:
    explicit EnginePool(TextEngine::GoesOn goesOn = {}, WorkBudget::Meter meter = WorkBudget::processorTime)
        : m_goesOn(std::move(goesOn)), m_meter(std::move(meter)) {}

    /// The engine for these packs ("vie+eng"), or null where they cannot be loaded.
    [[nodiscard]] TextEngine* engine(const QString& packs);

    [[nodiscard]] bool holds(const QString& packs) const { return m_engines.contains(packs); }

private:
    TextEngine::GoesOn m_goesOn;
    WorkBudget::Meter m_meter;
    std::map<QString, std::unique_ptr<TextEngine>> m_engines;
};

}  // namespace tralio
