#include "programs/recogniser/reading/engine_pool.h"

namespace tralio {

TextEngine* EnginePool::engine(const QString& packs) {
    std::unique_ptr<TextEngine>& engine = m_engines[packs];
    if (!engine)
        engine = std::make_unique<TextEngine>(packs, m_goesOn, m_meter);
    return engine->isLoaded() ? engine.get() : nullptr;
}

}  // namespace tralio
