// USB packets, each with two bytes of status before its data, against a way that looks at one byte after the
// other. Input: the packet size less one, four bytes, and the transfer.

#include "ftdi/statusbytes.h"
#include "tests/fuzz/target.h"

#include <vector>

namespace {

constexpr int overrun = 0x02;
constexpr int parity = 0x04;
constexpr int framing = 0x08;
constexpr int fifo = 0x80;

struct Plain
{
    std::vector<uchar> data;
    quint32 losses = 0;
};

Plain plainWay(QByteArrayView transfer, std::size_t packetSize)
{
    Plain plain;
    std::size_t place = 0; // in the packet
    for (const char byte : transfer) {
        const int value = static_cast<uchar>(byte);
        if (place >= 2)
            plain.data.push_back(static_cast<uchar>(byte));
        else if (place == 1 && (value & (overrun | parity | framing | fifo)) != 0)
            ++plain.losses;
        place = place + 1 == packetSize ? 0 : place + 1;
    }
    return plain;
}

void tryPackets(QByteArrayView transfer, std::size_t packetSize)
{
    const Plain plain = plainWay(transfer, packetSize);
    std::vector<uchar> bytes(transfer.begin(), transfer.end());
    Fuzz::require(ftdi::lossesIn(bytes, packetSize) == plain.losses, "losses are those of every packet");
    const auto data = ftdi::withoutStatusBytes(bytes, packetSize);
    Fuzz::require(std::equal(data.begin(), data.end(), plain.data.begin(), plain.data.end()),
                  "the data is what stands behind each packet's status");
    Fuzz::require(data.data() == bytes.data() || data.empty(), "the data stands at the transfer's beginning");
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    Reader reader(input);
    const std::size_t packetSize = std::size_t{reader.next<quint32>()} + 1;
    tryPackets(reader.rest(), packetSize);
    tryPackets(reader.rest(), std::size_t{0} - packetSize); // as large as sizes go
}
