#include "programs/http/redirections.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

bool isSameOrigin(const QUrl& one, const QUrl& other) {
    const auto port = [](const QUrl& url) { return url.port(url.scheme() == u"https"_s ? 443 : 80); };
    return one.scheme() == other.scheme() && one.host() == other.host() && port(one) == port(other);
}

}  // namespace

QString whyNotToFollow(const QUrl& from, const QUrl& target, AddressOrigin origin) {
    if (origin == AddressOrigin::enteredByUser && !isSameOrigin(from, target))
        return refusedRedirectionWords(from, origin);
    if (target.scheme() == u"https"_s)
        return {};
    if (target.scheme() != u"http"_s)
        return unsupportedSchemeWords(origin);
    return from.scheme() == u"https"_s ? refusedRedirectionWords(from, origin) : QString();
}

}  // namespace tralio
