#include "simulator/firmware/eeprom.h"

#include <QDebug>
#include <QSettings>
#include <QtEndian>

#include <numeric>

namespace simulator {

namespace {

constexpr qsizetype wordBytesCount = 4;

QString keyOf(const QString &serialNumber)
{
    return serialNumber + QStringLiteral("/Words");
}

} // namespace

Eeprom::Eeprom(QString path, QString serialNumber)
    : m_path(std::move(path)), m_serialNumber(std::move(serialNumber))
{
    load();
}

bool Eeprom::download(QByteArrayView payload)
{
    const qsizetype count = payload.size() / wordBytesCount;
    if (payload.size() % wordBytesCount != 0 || count > wordCount)
        return false;
    qFromBigEndian<quint32>(payload.data(), count, m_words.data());
    return true;
}

void Eeprom::initialise()
{
    m_words.fill(0);
}

void Eeprom::load()
{
    initialise();
    const QSettings file(m_path, QSettings::IniFormat);
    const QByteArray stored = QByteArray::fromHex(file.value(keyOf(m_serialNumber)).toString().toLatin1());
    if (stored.isEmpty())
        return;
    if (stored.size() != wordCount * wordBytesCount || !download(stored))
        qWarning().noquote() << QStringLiteral("%1: %2 does not hold 32 words; the EEPROM is empty")
                                    .arg(m_path, keyOf(m_serialNumber));
}

void Eeprom::commit() const
{
    QSettings file(m_path, QSettings::IniFormat);
    file.setValue(keyOf(m_serialNumber), QString::fromLatin1(wordBytes().toHex()));
    file.sync();
    if (file.status() != QSettings::NoError)
        qWarning().noquote() << QStringLiteral("%1: the EEPROM could not be stored").arg(m_path);
}

QByteArray Eeprom::wordBytes() const
{
    QByteArray bytes(wordCount * wordBytesCount, Qt::Uninitialized);
    qToBigEndian<quint32>(m_words.data(), wordCount, bytes.data());
    return bytes;
}

QByteArray Eeprom::readback() const
{
    QByteArray bytes = wordBytes();
    bytes.append(static_cast<char>(std::accumulate(bytes.cbegin(), bytes.cend(), 0)));
    return bytes;
}

} // namespace simulator
