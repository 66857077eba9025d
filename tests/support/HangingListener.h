#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <vector>

namespace corvane::test {

// A loopback listener that never accepts, its queue filled: the system drops every further
// connect's first packet, so a connect to it neither completes nor is refused. What a host
// behind a dead route looks like, without a packet leaving the machine.
class HangingListener {
public:
    HangingListener()
    {
        listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::listen(listener_, 0);
        socklen_t length = sizeof address;
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        // A queue of none holds one finished connect; the rest wait half open. Those fill it.
        for (int i = 0; i < 4; ++i) {
            const int filler = ::socket(AF_INET, SOCK_STREAM, 0);
            ::fcntl(filler, F_SETFL, O_NONBLOCK);
            ::connect(filler, reinterpret_cast<const sockaddr*>(&address), sizeof address);
            fillers_.push_back(filler);
        }
    }
    ~HangingListener()
    {
        for (const int filler : fillers_)
            ::close(filler);
        ::close(listener_);
    }
    HangingListener(const HangingListener&) = delete;
    HangingListener& operator=(const HangingListener&) = delete;

    std::uint16_t port() const { return port_; }

private:
    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::vector<int> fillers_;
};

} // namespace corvane::test
