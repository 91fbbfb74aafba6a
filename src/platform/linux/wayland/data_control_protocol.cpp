#include "platform/linux/wayland/data_control_protocol.h"

#include <wayland-client-protocol.h>

namespace tralio {

const DataControlProtocol& DataControlProtocol::get(Family family) {
    static const DataControlProtocol ext({"ext_data_control_manager_v1", "ext_data_control_device_v1",
        "ext_data_control_source_v1", "ext_data_control_offer_v1", 1, "?o"});
    static const DataControlProtocol wlr({"zwlr_data_control_manager_v1", "zwlr_data_control_device_v1",
        "zwlr_data_control_source_v1", "zwlr_data_control_offer_v1", 2, "2?o"});
    return family == Family::ext ? ext : wlr;
}

// Signatures: n is a new object, o an object, ? makes it nullable, s is a string, h a file descriptor. A
// leading number is the version that introduced the message.
DataControlProtocol::DataControlProtocol(const Names& names)
    : version(names.version),
      manager{names.manager, static_cast<int>(version), 3, m_managerRequests, 0, nullptr},
      device{names.device, static_cast<int>(version), 3, m_deviceRequests, 4, m_deviceEvents},
      source{names.source, static_cast<int>(version), 2, m_sourceRequests, 2, m_sourceEvents},
      offer{names.offer, static_cast<int>(version), 2, m_offerRequests, 1, m_offerEvents},
      m_deviceAndSeatTypes{&device, &wl_seat_interface},
      m_managerRequests{{"create_data_source", "n", m_sourceType},
          {"get_data_device", "no", m_deviceAndSeatTypes}, {"destroy", "", m_noTypes}},
      m_deviceRequests{{"set_selection", "?o", m_sourceType}, {"destroy", "", m_noTypes},
          {"set_primary_selection", names.primarySignature, m_sourceType}},
      m_deviceEvents{{"data_offer", "n", m_offerType}, {"selection", "?o", m_offerType},
          {"finished", "", m_noTypes}, {"primary_selection", names.primarySignature, m_offerType}},
      m_sourceRequests{{"offer", "s", m_noTypes}, {"destroy", "", m_noTypes}},
      m_sourceEvents{{"send", "sh", m_noTypes}, {"cancelled", "", m_noTypes}},
      m_offerRequests{{"receive", "sh", m_noTypes}, {"destroy", "", m_noTypes}},
      m_offerEvents{{"offer", "s", m_noTypes}} {}

}  // namespace tralio
