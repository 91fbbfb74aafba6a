#include "programs/http/redirections.h"

#include <algorithm>

namespace tralio {

bool isRedirection(long status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

std::string whyNotToGoTo(const Address& address, AddressOrigin origin) {
    if (address.scheme != "http" && address.scheme != "https")
        return unsupportedSchemeWords(origin);
    return address.host.empty() ? missingHostWords(origin) : std::string();
}

std::string whyNotToFollow(const Address& from, const Address& target, AddressOrigin origin) {
    if (origin == AddressOrigin::enteredByUser && !isSameOrigin(from, target))
        return refusedRedirectionWords(from.name, origin);
    if (target.scheme == "https")
        return {};
    if (target.scheme != "http")
        return unsupportedSchemeWords(origin);
    return from.scheme == "https" ? refusedRedirectionWords(from.name, origin) : std::string();
}

std::string RedirectionTrail::whyNotToFollow(
    const Address& from, const Address& target, bool withText, AddressOrigin origin) {
    constexpr size_t mostSteps = 50;
    m_passed.push_back(from.text);
    if (m_passed.size() > mostSteps || (withText && std::ranges::count(m_passed, target.text) > 0))
        return tooManyRedirectionsWords(from.name, origin);
    return tralio::whyNotToFollow(from, target, origin);
}

}  // namespace tralio
