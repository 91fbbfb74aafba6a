#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "programs/http/address.h"

namespace tralio {

/// The desktop's proxies, by libproxy. A question may take long, for a proxy script is fetched and run, and
/// even for ever: it is asked in a thread of its own, whose end nobody waits for.
class Proxies final {
public:
    struct Answer {
        uint32_t request = 0;
        std::vector<std::string> proxies;  ///< in libcurl's form, to be tried in turn; at least one, which is
                                           ///< empty for the direct way
    };

    Proxies();
    ~Proxies();
    Proxies(const Proxies&) = delete;
    Proxies& operator=(const Proxies&) = delete;

    /// Asks for the proxy to an address; the answer goes by the number of the request. A model on this
    /// machine is always reached directly: a proxy elsewhere would look for it on its own machine.
    void ask(uint32_t request, const Address& address);

    /// Nobody wants the answer any more: a question that has not been put yet is none.
    void withdraw(uint32_t request);

    /// The question under way is not waited for any more; those behind it are put again.
    void giveUp();

    /// Becomes readable when there are answers.
    [[nodiscard]] int descriptor() const;
    [[nodiscard]] std::vector<Answer> takeAnswers();

private:
    struct Desk;

    static void startThread(const std::shared_ptr<Desk>& desk);

    std::shared_ptr<Desk> m_desk;  ///< shared with the thread, which may outlive us
};

}  // namespace tralio
