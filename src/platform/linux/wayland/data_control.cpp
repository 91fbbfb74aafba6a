#include "platform/linux/wayland/data_control.h"

#include <algorithm>
#include <utility>
#include <wayland-client-protocol.h>

#include "common/text_limit.h"
#include "platform/linux/selection/clipboard_formats.h"
#include "platform/linux/wayland/data_pipe.h"
#include "platform/linux/wayland/wayland_proxy.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using Protocol = DataControlProtocol;

constexpr void* newObject = nullptr;
constexpr qsizetype pipePage = 4096;  // bytes
constexpr int syncLimit = 100;        // milliseconds
constexpr int initialLimit = 500;     // milliseconds: at login many programs start at once

DataControl& controlOf(void* data) {
    return *static_cast<DataControl*>(data);
}

}  // namespace

const Protocol::DeviceListener DataControl::deviceListener{
    [](void* data, wl_proxy*, wl_proxy* offer) { controlOf(data).offered(offer); },
    [](void* data, wl_proxy*, wl_proxy* offer) {
        controlOf(data).selectionChanged(Selection::clipboard, offer);
    },
    [](void*, wl_proxy*) {},  // the seat is gone: there will be no more changes
    [](void* data, wl_proxy*, wl_proxy* offer) {
        controlOf(data).selectionChanged(Selection::primary, offer);
    },
};

const Protocol::OfferListener DataControl::offerListener{
    [](void* data, wl_proxy* offer, const char* mimeType) {
        controlOf(data).m_arriving[offer] += QString::fromUtf8(mimeType);
    },
};

const Protocol::SourceListener DataControl::sourceListener{
    [](void* data, wl_proxy*, const char*, qint32 fd) { new DataPipeWriter(fd, controlOf(data).m_ownText); },
    [](void* data, wl_proxy*) { controlOf(data).dropSource(); },
};

std::unique_ptr<DataControl> DataControl::open(WaylandConnection& connection) {
    auto seat = connection.bind(wl_seat_interface, 1);
    if (!seat)
        return nullptr;
    for (const auto family : {Protocol::Family::ext, Protocol::Family::wlr}) {
        const Protocol& protocol = Protocol::get(family);
        // Older compositors have a version of the protocol without PRIMARY.
        if (auto manager = connection.bind(protocol.manager, protocol.version)) {
            return std::unique_ptr<DataControl>(
                new DataControl(connection, protocol, std::move(manager), std::move(seat)));
        }
    }
    return nullptr;
}

DataControl::DataControl(WaylandConnection& connection, const DataControlProtocol& protocol,
    WaylandObject manager, WaylandObject seat)
    : m_connection(connection),
      m_protocol(protocol),
      m_manager(std::move(manager)),
      m_seat(std::move(seat)),
      m_device(makeObject(m_manager.get(), Protocol::ManagerRequest::getDataDevice, protocol.device,
          newObject, m_seat.get())) {
    addListener(m_device.get(), deviceListener, this);
    // The compositor reports existing selections at once. Reported later, they would count as new.
    m_connection.sync(QDeadlineTimer(initialLimit));
    m_initial = false;
}

DataControl::~DataControl() {
    for (State& state : m_states)
        drop(state.offer);
    dropSource();
    destroyObject(std::move(m_device), Protocol::DeviceRequest::destroy);
}

void DataControl::offered(wl_proxy* object) {
    m_arriving.insert(object, {});
    addListener(object, offerListener, this);
}

void DataControl::selectionChanged(Selection selection, wl_proxy* object) {
    State& changedState = state(selection);
    drop(changedState.offer);
    if (object)
        changedState.offer = Offer{WaylandObject(object), m_arriving.take(object)};
    if (m_initial)
        return;
    ++changedState.changeCount;
    Q_EMIT changed(selection);
}

void DataControl::drop(std::optional<Offer>& offer) {
    if (offer)
        destroyObject(std::move(offer->object), Protocol::OfferRequest::destroy);
    offer.reset();
}

qint64 DataControl::changeCount(Selection selection) {
    m_connection.sync(QDeadlineTimer(syncLimit));
    return state(selection).changeCount;
}

QStringList DataControl::mimeTypes(Selection selection) {
    m_connection.sync(QDeadlineTimer(syncLimit));
    const auto& offer = state(selection).offer;
    return offer ? offer->mimeTypes : QStringList();
}

std::optional<QString> DataControl::text(Selection selection, QDeadlineTimer deadline) {
    // The clipboard is ours: while waiting here we could not answer our own request.
    if (m_source && selection == Selection::clipboard)
        return m_ownText;
    const QStringList offered = mimeTypes(selection);
    const auto* format = std::find_if(textFormats.begin(), textFormats.end(),
        [&](const TextFormat& candidate) { return offered.contains(QLatin1String(candidate.name)); });
    if (format == textFormats.end())
        return std::nullopt;
    const auto pipe = receive(selection, QLatin1String(format->name));
    const qint64 asked = state(selection).changeCount;
    const auto bytes = pipe ? pipe->read(longestTextBytes, deadline) : std::nullopt;
    // The pipe ends in the same way when the owner has crashed while writing. Then a whole number of pipe
    // pages has arrived, and the owner's clipboard disappears: only both together count as a cut-off text.
    const bool mayBePart = bytes && !bytes->isEmpty() && bytes->size() % pipePage == 0;
    if (mayBePart && changeCount(selection) != asked)
        return std::nullopt;
    return bytes ? std::optional(decodeText(*bytes, format->encoding)) : std::nullopt;
}

std::shared_ptr<DataPipeReader> DataControl::receive(Selection selection, const QString& mimeType) {
    const auto& offer = state(selection).offer;
    auto pipe = std::make_shared<DataPipeReader>();
    if (!offer || !pipe->isOpen())
        return nullptr;
    sendRequest(offer->object.get(), Protocol::OfferRequest::receive, mimeType.toUtf8().constData(),
        pipe->writeEnd());
    m_connection.flush();
    pipe->closeWriteEnd();
    return pipe;
}

void DataControl::setClipboard(const QString& text) {
    dropSource();
    m_ownText = text;
    m_source =
        makeObject(m_manager.get(), Protocol::ManagerRequest::createDataSource, m_protocol.source, newObject);
    addListener(m_source.get(), sourceListener, this);
    for (const TextFormat& format : textFormats)
        sendRequest(m_source.get(), Protocol::SourceRequest::offer, format.name);
    sendRequest(m_device.get(), Protocol::DeviceRequest::setSelection, m_source.get());
    m_connection.flush();
}

void DataControl::dropSource() {
    if (m_source)
        destroyObject(std::move(m_source), Protocol::SourceRequest::destroy);
}

}  // namespace tralio
