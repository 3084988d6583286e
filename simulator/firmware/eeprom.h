#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>

namespace simulator {

/// The 32 words of the detector's EEPROM: a working copy, and a stored one that outlives the program in a
/// file, in a section named by the serial number. At power-up the working copy is the stored one.
class Eeprom
{
public:
    static constexpr int wordCount = 32;
    static constexpr int readbackBytes = 129;

    /// `path` may be relative; it is then looked up in the working directory each time.
    Eeprom(QString path, QString serialNumber);

    /// Sets the first words of the working copy. False, and nothing changed, when the payload is not whole
    /// words or is more than there are.
    [[nodiscard]] bool download(QByteArrayView payload);
    /// All words of the working copy become 0.
    void initialise();
    /// The working copy becomes the stored one: 0 when none was stored.
    void load();
    /// The stored copy becomes the working one. A file that cannot be written leaves a line on the debug
    /// output.
    void commit() const;

    /// The words of the working copy and the sum of their bytes.
    [[nodiscard]] QByteArray readback() const;

private:
    [[nodiscard]] QByteArray wordBytes() const;

    QString m_path;
    QString m_serialNumber;
    std::array<quint32, wordCount> m_words{};
};

} // namespace simulator
