#include "simulator/firmware/replyfaults.h"

namespace simulator {

namespace {

bool suffers(const Command &command, Faults &faults)
{
    const auto number = static_cast<quint16>(command.frameClass << 8U | command.code);
    if (faults.replyCommand.value_or(number) != number)
        return false;
    if (!faults.repliesLeft)
        return true;
    if (*faults.repliesLeft == 0)
        return false;
    --*faults.repliesLeft;
    return true;
}

} // namespace

std::optional<Reply> withFaults(QByteArray reply, const Command &command, Faults &faults)
{
    if (!suffers(command, faults))
        return Reply{std::move(reply)};
    if (faults.missingReply)
        return std::nullopt;
    if (faults.corruptReply) {
        for (char &byte : reply)
            byte = static_cast<char>(~byte);
    }
    reply.chop(faults.replyBytesCut);
    reply.append(faults.replyBytesAdded, '\0');
    return Reply{std::move(reply), faults.replyDelay};
}

} // namespace simulator
