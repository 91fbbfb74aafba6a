#pragma once

#include <QtGlobal>

#include <wayland-client-core.h>

namespace tralio {

/// The data-control protocol, with which a program without the keyboard focus watches, reads and sets the
/// clipboard and the PRIMARY selection. It exists under two sets of names and is otherwise equal: the
/// original one of wlroots and its successor, ext-data-control.
///
/// The tables for libwayland are written by hand, since not every system that has the protocol has its
/// description files.
class DataControlProtocol final {
public:
    enum class Family { ext, wlr };

    [[nodiscard]] static const DataControlProtocol& get(Family family);

    DataControlProtocol(const DataControlProtocol&) = delete;
    DataControlProtocol& operator=(const DataControlProtocol&) = delete;

    /// The version that we use, the first one with the PRIMARY selection.
    quint32 version;

    // The opcodes of the requests, by interface.
    struct ManagerRequest {
        static constexpr quint32 createDataSource = 0;
        static constexpr quint32 getDataDevice = 1;
    };
    struct DeviceRequest {
        static constexpr quint32 setSelection = 0;
        static constexpr quint32 destroy = 1;
    };
    struct SourceRequest {
        static constexpr quint32 offer = 0;
        static constexpr quint32 destroy = 1;
    };
    struct OfferRequest {
        static constexpr quint32 receive = 0;
        static constexpr quint32 destroy = 1;
    };

    // The compositor's events, in the order of the protocol.
    struct DeviceListener {
        void (*dataOffer)(void* data, wl_proxy* device, wl_proxy* offer);
        void (*selection)(void* data, wl_proxy* device, wl_proxy* offer);
        void (*finished)(void* data, wl_proxy* device);
        void (*primarySelection)(void* data, wl_proxy* device, wl_proxy* offer);
    };
    struct OfferListener {
        void (*offer)(void* data, wl_proxy* offer, const char* mimeType);
    };
    struct SourceListener {
        void (*send)(void* data, wl_proxy* source, const char* mimeType, qint32 fd);
        void (*cancelled)(void* data, wl_proxy* source);
    };

    wl_interface manager;
    wl_interface device;
    wl_interface source;
    wl_interface offer;

private:
    struct Names {
        const char* manager;
        const char* device;
        const char* source;
        const char* offer;
        quint32 version;
        /// The signature of the messages for PRIMARY, which version 2 introduced.
        const char* primarySignature;
    };

    explicit DataControlProtocol(const Names& names);

    const wl_interface* m_noTypes[2] = {nullptr, nullptr};
    const wl_interface* m_sourceType[1] = {&source};
    const wl_interface* m_offerType[1] = {&offer};
    const wl_interface* m_deviceAndSeatTypes[2];
    wl_message m_managerRequests[3];
    wl_message m_deviceRequests[3];
    wl_message m_deviceEvents[4];
    wl_message m_sourceRequests[2];
    wl_message m_sourceEvents[2];
    wl_message m_offerRequests[2];
    wl_message m_offerEvents[1];
};

}  // namespace tralio
