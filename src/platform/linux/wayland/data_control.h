#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>

#include "platform/linux/wayland/data_control_protocol.h"
#include "platform/linux/wayland/wayland_connection.h"

namespace tralio {

class DataPipeReader;

/// The clipboard and the PRIMARY selection through the data-control protocol. Contents are read only on
/// request.
class DataControl final : public QObject {
    Q_OBJECT

public:
    enum class Selection { clipboard, primary };
    Q_ENUM(Selection)

    /// Null if the compositor offers neither form of the protocol.
    [[nodiscard]] static std::unique_ptr<DataControl> open(WaylandConnection& connection);
    ~DataControl() override;

    /// The name of the protocol in use, for the log.
    [[nodiscard]] const char* protocolName() const { return m_protocol.manager.name; }

    /// The number of changes of the selection up to now. Waits for the compositor, up to a tenth of a second.
    [[nodiscard]] qint64 changeCount(Selection selection);

    /// The text of a selection. Waits for its owner until `deadline` at most. Absent if there is none.
    [[nodiscard]] std::optional<QString> text(Selection selection, QDeadlineTimer deadline);

    /// The MIME types that the owner of a selection offers.
    [[nodiscard]] QStringList mimeTypes(Selection selection);

    /// The pipe from which the content of one type can be read, on any thread; null if there is none.
    [[nodiscard]] std::shared_ptr<DataPipeReader> receive(Selection selection, const QString& mimeType);

    void setClipboard(const QString& text);
    [[nodiscard]] bool ownsClipboard() const { return m_source != nullptr; }

Q_SIGNALS:
    /// A selection has a new owner or new content. Not emitted for what was there before this object.
    void changed(tralio::DataControl::Selection selection);

private:
    struct Offer {
        WaylandObject object;
        QStringList mimeTypes;
    };
    struct State {
        std::optional<Offer> offer;
        qint64 changeCount = 0;
    };

    DataControl(WaylandConnection& connection, const DataControlProtocol& protocol, WaylandObject manager,
        WaylandObject seat);

    static const DataControlProtocol::DeviceListener deviceListener;
    static const DataControlProtocol::OfferListener offerListener;
    static const DataControlProtocol::SourceListener sourceListener;

    State& state(Selection selection) { return m_states[static_cast<std::size_t>(selection)]; }
    void offered(wl_proxy* object);
    void selectionChanged(Selection selection, wl_proxy* object);
    void drop(std::optional<Offer>& offer);
    void dropSource();

    WaylandConnection& m_connection;
    const DataControlProtocol& m_protocol;
    WaylandObject m_manager;
    WaylandObject m_seat;
    WaylandObject m_device;
    QHash<wl_proxy*, QStringList> m_arriving;  ///< offers that do not belong to a selection yet
    std::array<State, 2> m_states;
    WaylandObject m_source;  ///< while the clipboard is ours
    QString m_ownText;
    bool m_initial = true;
};

}  // namespace tralio
