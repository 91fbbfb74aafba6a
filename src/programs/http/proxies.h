#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "programs/http/address.h"

namespace tralio {

/// The desktop's proxies, from libproxy. An answer may take long, since libproxy downloads and runs a proxy
/// script, or may never come. So questions are asked in a thread that is never joined.
class Proxies final {
public:
    struct Answer {
        uint32_t request = 0;
        /// In libcurl's form, to be tried in turn; at least one, empty for a direct connection.
        std::vector<std::string> proxies;
    };

    Proxies();
    ~Proxies();
    Proxies(const Proxies&) = delete;
    Proxies& operator=(const Proxies&) = delete;

    /// Asks for the proxies for an address; the answer carries the number `request`. Not for loopback
    /// addresses: a proxy would look for the user's model on its own machine.
    void ask(uint32_t request, const Address& address);

    /// Drops the question of `request` if it has not reached libproxy yet.
    void withdraw(uint32_t request);

    /// Stops waiting for the question under way; the ones after it are asked again in a new thread.
    void giveUp();

    /// Becomes readable when there are answers. Changes with `giveUp()`.
    [[nodiscard]] int descriptor() const;
    [[nodiscard]] std::vector<Answer> takeAnswers();

private:
    struct Desk;

    static void startThread(const std::shared_ptr<Desk>& desk);

    std::shared_ptr<Desk> m_desk;  ///< shared with the thread, which may outlive this object
};

}  // namespace tralio
