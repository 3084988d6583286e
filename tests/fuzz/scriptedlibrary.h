#pragma once

#include "device/d2xx.h"

#include <QByteArray>

#include <memory>
#include <optional>

/// A driver library whose reads, writes and looks are a target's own. One at a time. Calls come on the thread
/// that drives the link.
class ScriptedLibrary
{
public:
    ScriptedLibrary();
    virtual ~ScriptedLibrary();
    Q_DISABLE_COPY_MOVE(ScriptedLibrary)

    /// The calls as the program sees them; every device opens.
    [[nodiscard]] std::shared_ptr<D2xx> driver() const { return m_driver; }

    /// Bytes that wait; none: the status call fails.
    virtual std::optional<quint32> waiting() = 0;
    /// Fills the buffer as far as it goes and returns how many bytes it says that it read; none: the call
    /// fails.
    virtual std::optional<quint32> read(char *buffer, quint32 length) = 0;
    virtual void write(const QByteArray &bytes) = 0;
    virtual quint32 losses() { return 0; }

private:
    struct Entry; // the C functions

    std::shared_ptr<D2xx> m_driver;
};
