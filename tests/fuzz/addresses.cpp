// Where a redirection leads, as a server writes it, and an address as the user does.

#include "fuzz/fuzz.h"
#include "programs/http/address.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    const Address base = addressOf("https://a.test:8443/b/c?d");
    for (const Address& read : {addressOf(input.toStdString()), resolved(base, input.toStdString())}) {
        const Address again = addressOf(read.text);
        if (again.host.empty())
            continue;  // so does libcurl refuse it, by which it is sent
        require(again.text == read.text && isSameOrigin(again, read), "an address is read as it is written");
        require(read.text.find_first_of("\r\n") == std::string::npos, "it is one line");
        require(again.host.find('@') == std::string::npos, "a login is no part of a host");
    }
}
