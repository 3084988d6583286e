#include "simulator/firmware/replyfaults.h"

namespace simulator {

namespace {

bool suffers(const Command &command, Faults &faults)
{
    const auto number = static_cast<quint16>(command.frameClass << 8U | command.code);
    return faults.replyCommand.value_or(number) == number && happens(faults.repliesLeft);
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
