#include "programs/http/address.h"

#include <algorithm>
#include <cstdlib>
#include <curl/curl.h>
#include <memory>
#include <string_view>

namespace tralio {
namespace {

/// Flags for URLs from servers, which are often not quite valid.
constexpr unsigned lenient = CURLU_NON_SUPPORT_SCHEME | CURLU_URLENCODE | CURLU_ALLOW_SPACE;

class Url final {
public:
    bool read(const std::string& text) {
        return curl_url_set(m_url.get(), CURLUPART_URL, text.c_str(), lenient) == CURLUE_OK;
    }
    void drop(CURLUPart part) { curl_url_set(m_url.get(), part, nullptr, 0); }

    /// Empty where the URL has no such part.
    [[nodiscard]] std::string part(CURLUPart part, unsigned flags = 0) const {
        char* found = nullptr;
        if (curl_url_get(m_url.get(), part, &found, flags) != CURLUE_OK)
            return {};
        std::string text = found;
        curl_free(found);
        return text;
    }

private:
    struct Cleanup {
        void operator()(CURLU* url) const { curl_url_cleanup(url); }
    };
    std::unique_ptr<CURLU, Cleanup> m_url{curl_url()};
};

/// Independent of the user's locale.
char inSmallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

Address addressOf(const std::string& text) {
    Address address;
    address.scheme = text.substr(0, text.find(':'));
    std::ranges::transform(address.scheme, address.scheme.begin(), inSmallLetter);
    const size_t begin = address.scheme.size() + 3;
    // With one or three slashes libcurl would assume two and take the path for a host.
    const bool hasHost = text.compare(begin - 3, 3, "://") == 0 && text[begin] != '/';
    Url url;
    if (!hasHost || !url.read(text))
        return address;
    for (const CURLUPart part : {CURLUPART_USER, CURLUPART_PASSWORD, CURLUPART_FRAGMENT})
        url.drop(part);
    // WORKAROUND: libcurl 7.88 does not know a percent-encoded IPv4 address ("%31.2") for one before it is
    // read again. A name that has a percent sign even then is none.
    if (!url.read(url.part(CURLUPART_URL)))
        return address;
    if (const std::string host = url.part(CURLUPART_HOST);
        host.find('%') != std::string::npos && host[0] != '[')
        return address;
    std::string& whole = address.text = url.part(CURLUPART_URL, CURLU_PUNYCODE | CURLU_NO_DEFAULT_PORT);
    if (whole.empty())
        return address;
    // The interface name after a percent sign ("fe80::1%eth0") is case-sensitive and stays as it is.
    const auto host = whole.begin() + static_cast<std::ptrdiff_t>(begin);
    std::transform(host, std::find_if(host, whole.end(), [](char c) { return c == '/' || c == '%'; }), host,
        inSmallLetter);
    const std::string authority = whole.substr(begin, whole.find('/', begin) - begin);
    const size_t end = authority.find_last_of(":]");
    address.host = end != std::string::npos && authority[end] == ':' ? authority.substr(0, end) : authority;
    address.port = std::atoi(url.part(CURLUPART_PORT).c_str());
    address.name = authorityOf(address);
    return address;
}

Address resolved(const Address& base, const std::string& reference) {
    // WORKAROUND: libcurl 7.88 resolves a reference to a fragment of the same page ("#part") as a file beside
    // that page.
    const std::string place = reference.substr(0, reference.find('#'));
    if (place.empty())
        return base;
    Url url;
    Address target;
    if (place.find(':') < place.find_first_of("/?"))  // an absolute address, with a scheme
        target = addressOf(place);
    else if (url.read(base.text) && url.read(place))
        target = addressOf(url.part(CURLUPART_URL));
    if (isSameOrigin(base, target))
        target.name = base.name;
    return target;
}

bool isSameOrigin(const Address& one, const Address& other) {
    return one.scheme == other.scheme && one.host == other.host && portOf(one) == portOf(other);
}

int portOf(const Address& address) {
    return address.port != 0 ? address.port : address.scheme == "https" ? 443 : 80;
}

std::string authorityOf(const Address& address) {
    return address.host + (address.port != 0 ? ':' + std::to_string(address.port) : std::string());
}

}  // namespace tralio
