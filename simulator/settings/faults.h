#pragma once

#include "simulator/clock.h"

#include <QSet>

#include <optional>

namespace simulator {

class SettingsReader;

/// A count of faults to come that never runs down.
inline constexpr int forEver = -1;

/// Whether a fault still happens; counts it down.
[[nodiscard]] constexpr bool happens(int &left)
{
    if (left == 0)
        return false;
    if (left != forEver)
        --left;
    return true;
}

/// The calls of the driver library that can be told to hang.
enum class Call {
    Open,
    Close,
    ResetDevice,
    SetBitMode,
    SetLatencyTimer,
    SetUsbParameters,
    SetFlowControl,
    Purge,
    SetTimeouts,
    GetStatus,
    Read,
    Write
};

/// When the removal of a device is told: when it happens, some time after, some time before, or not at all.
enum class RemovalMessage { Prompt, Late, Early, Never };

/// What goes wrong. Counts run down as the faults happen, unless they are `forEver`; reading the settings
/// file again renews them.
struct Faults
{
    std::optional<quint16> replyCommand; ///< class and code of the command whose replies suffer; none: all
    int repliesLeft = forEver;           ///< how many replies still suffer
    Milliseconds replyDelay{0};
    int replyBytesCut = 0;
    int replyBytesAdded = 0;
    bool corruptReply = false; ///< every byte inverted
    bool missingReply = false;

    int notReadyQueries = 0; ///< readiness queries still answered with "not ready"
    int failOpens = 0;
    quint32 openStatus = 3;

    QSet<Call> failingCalls; ///< closing and the set-up only: the others have counts of their own
    int failCalls = forEver; ///< how many of them fail
    QSet<Call> hangingCalls;
    int hangCalls = forEver; ///< how many of them hang
    Milliseconds hangTime{5000};

    std::optional<quint32> claimedDevices; ///< how many the making of the list tells
    quint32 claimedWaiting = 0;            ///< bytes told beyond those that wait
    quint32 claimedRead = 0;               ///< bytes told beyond those that a read asked for

    /// Image bytes of an acquisition before which looks, reads and writes go well.
    std::optional<qint64> fromByte;
    int failStatus = 0;
    int failReads = 0;
    bool failedReadsTake = false; ///< what a failing read would have brought is lost
    int failWrites = 0;
    int shortReads = 0;
    int shortWrites = 0;
    quint32 shortReadBytes = 1;  ///< how many bytes a short read brings at most
    quint32 shortWriteBytes = 3; ///< how many bytes of a short write reach the detector at most

    std::optional<qint64> stallAfterBytes; ///< image bytes of an acquisition, after which no more are sent
    std::optional<qint64> unplugAtByte;    ///< image bytes of an acquisition, after which the cable is pulled
    std::optional<Milliseconds> replugAfter; ///< a cable that was pulled is plugged in again by then
    RemovalMessage removalMessage = RemovalMessage::Prompt;
    Milliseconds removalDelay{1000}; ///< of a message that is late or early
    bool keepsStreaming = false;     ///< an acquisition outlives the handle
    std::optional<qint64> tornBlock; ///< block of an acquisition that loses its last bytes
    int tornBytes = 512;
    std::optional<qint64> doubledBlock; ///< block of an acquisition that is sent twice in a row
};

/// The group [Faults] of the settings file.
[[nodiscard]] Faults readFaults(SettingsReader &reader);

} // namespace simulator
