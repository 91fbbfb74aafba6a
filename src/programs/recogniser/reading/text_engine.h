#pragma once

#include <QStringList>

#include <functional>
#include <memory>

#include "programs/recogniser/pixels/plane.h"
#include "programs/recogniser/reading/reading.h"
#include "programs/recogniser/reading/work_budget.h"

namespace tesseract {
class TessBaseAPI;
}

namespace tralio {

/// One loaded recognition engine. Not reentrant, and gone before the process leaves `main`: the library's own
/// static objects must outlive it.
class TextEngine final {
public:
    /// Called at every line that it reads.
    using GoesOn = std::function<void()>;

    /// Loads language packs with their dictionaries, the first of them the leading one ("vie+eng"). Check
    /// `isLoaded`.
    TextEngine(const QString& packs, GoesOn goesOn, WorkBudget::Meter meter);
    TextEngine(const TextEngine&) = delete;
    TextEngine& operator=(const TextEngine&) = delete;
    ~TextEngine();

    [[nodiscard]] bool isLoaded() const { return m_isLoaded; }

    /// All language packs that are installed beside the loaded ones.
    [[nodiscard]] QStringList installedPacks() const;

    enum class Layout { block, singleLine };

    /// Reads dark text on white, as far as it comes in the time that one picture may take. Boxes are in
    /// pixels of the picture.
    [[nodiscard]] Reading read(const Plane& picture, Layout layout = Layout::block);

private:
    GoesOn m_goesOn;
    WorkBudget::Meter m_meter;
    std::unique_ptr<tesseract::TessBaseAPI> m_api;
    bool m_isLoaded = false;
};

}  // namespace tralio
