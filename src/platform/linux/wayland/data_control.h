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

/// The clipboard and the PRIMARY selection through the data-control protocol. No content is read before it is
/// asked for.
class DataControl final : public QObject {
    Q_OBJECT

public:
    enum class Selection { clipboard, primary };
    Q_ENUM(Selection)

    /// Null where the compositor offers the protocol in neither of its two forms.
    [[nodiscard]] static std::unique_ptr<DataControl> open(WaylandConnection& connection);
    ~DataControl() override;

    /// The name of the protocol that is spoken, for the log.
    [[nodiscard]] const char* protocolName() const { return m_protocol.manager.name; }

    /// How often the selection has changed, up to now: waits for the compositor's word, a tenth of a second
    /// at the most.
    [[nodiscard]] qint64 changeCount(Selection selection);

    /// The text of a selection, awaited from its owner until `deadline` at the most. Absent when there is
    /// none.
    [[nodiscard]] std::optional<QString> text(Selection selection, QDeadlineTimer deadline);

    /// The kinds of content that a selection's owner offers, by their MIME types.
    [[nodiscard]] QStringList mimeTypes(Selection selection);

    /// The pipe out of which the content of one kind comes, which may be read on any thread; null when there
    /// is none.
    [[nodiscard]] std::shared_ptr<DataPipeReader> receive(Selection selection, const QString& mimeType);

    void setClipboard(const QString& text);
    [[nodiscard]] bool ownsClipboard() const { return m_source != nullptr; }

Q_SIGNALS:
    /// A selection has a new owner or a new content. Not told of what was there before we came.
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
    QHash<wl_proxy*, QStringList> m_arriving;  ///< offers that are not yet any selection's
    std::array<State, 2> m_states;
    WaylandObject m_source;  ///< while the clipboard is ours
    QString m_ownText;
    bool m_initial = true;
};

}  // namespace tralio
