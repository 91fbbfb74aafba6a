#include "programs/http/redirections.h"

namespace tralio {

using namespace Qt::StringLiterals;

int portOf(const QUrl& url) {
    return url.port(url.scheme() == u"https"_s ? 443 : 80);
}

bool isSameOrigin(const QUrl& one, const QUrl& other) {
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

bool isRedirection(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

QString whyNotToGoTo(const QUrl& url, AddressOrigin origin) {
    if (url.scheme() != u"http"_s && url.scheme() != u"https"_s)
        return unsupportedSchemeWords(origin);
    return url.host().isEmpty() ? missingHostWords(origin) : QString();
}

QString whyNotToFollow(const QUrl& from, const QUrl& target, AddressOrigin origin) {
    if (origin == AddressOrigin::enteredByUser && !isSameOrigin(from, target))
        return refusedRedirectionWords(from, origin);
    if (target.scheme() == u"https"_s)
        return {};
    if (target.scheme() != u"http"_s)
        return unsupportedSchemeWords(origin);
    return from.scheme() == u"https"_s ? refusedRedirectionWords(from, origin) : QString();
}

namespace {

/// One form for all that lead to one place.
QUrl withoutUsualPort(QUrl url) {
    if (portOf(url) == (url.scheme() == u"https"_s ? 443 : 80))
        url.setPort(-1);
    return url;
}

}  // namespace

QString RedirectionTrail::whyNotToFollow(
    const QUrl& from, const QUrl& target, bool withText, AddressOrigin origin) {
    constexpr qsizetype mostSteps = 50;
    m_passed += withoutUsualPort(from);
    if (m_passed.size() > mostSteps || (withText && m_passed.contains(withoutUsualPort(target))))
        return tooManyRedirectionsWords(from, origin);
    return tralio::whyNotToFollow(from, target, origin);
}

}  // namespace tralio
