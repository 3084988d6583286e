#include "simulator/firmware/commandparser.h"

#include <algorithm>
#include <array>
#include <utility>

namespace simulator {

namespace {

constexpr qsizetype headBytes = 6;
constexpr int any = -1;
constexpr std::array<int, headBytes> head{0xFF, 0xAA, any, any, 0x0D, 0xEB};

/// As far as there are bytes, they are those of a frame's head.
bool mayBeHead(QByteArrayView bytes)
{
    const qsizetype count = qMin(bytes.size(), headBytes);
    return std::equal(bytes.begin(), bytes.begin() + count, head.begin(), [](char byte, int expected) {
        return expected == any || static_cast<uchar>(byte) == expected;
    });
}

} // namespace

void CommandParser::write(QByteArrayView bytes, const Handler &handler)
{
    m_rest.append(bytes);
    QByteArrayView unread(m_rest);
    while (!unread.empty()) {
        if (!mayBeHead(unread)) {
            unread = unread.sliced(1);
            continue;
        }
        if (unread.size() < headBytes)
            break;
        Command command{static_cast<uchar>(unread[2]), static_cast<uchar>(unread[3]), {}};
        unread = unread.sliced(headBytes);
        if (command.frameClass == parameterClass)
            command.payload = std::exchange(unread, QByteArrayView());
        handler(command);
    }
    m_rest.remove(0, m_rest.size() - unread.size());
}

} // namespace simulator
