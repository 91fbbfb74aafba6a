#pragma once

#include <QtGlobal>

#include <wayland-client-core.h>

namespace tralio {

/// The data-control protocol, by which a program without the keyboard focus follows, reads and sets the
/// clipboard and the PRIMARY selection. It exists twice, equal except for its names: as the one that wlroots
/// began with and as its successor among the common extensions.
///
/// Described here as libwayland wants it, since the protocol files are not to be had everywhere that the
/// protocol is.
class DataControlProtocol final {
public:
    enum class Family { ext, wlr };

    [[nodiscard]] static const DataControlProtocol& get(Family family);

    DataControlProtocol(const DataControlProtocol&) = delete;
    DataControlProtocol& operator=(const DataControlProtocol&) = delete;

    /// The version in which the PRIMARY selection is part of it, and that we speak.
    quint32 version;

    // The numbers of requests, by interface.
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

    // What the compositor tells, in the order of the protocol.
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
        /// The signature of what came with the second version: the PRIMARY selection.
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
