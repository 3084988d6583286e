#pragma once

#include "imaging/stackfile.h"

#include <vector>

/// All frames as they came over the cable, without anything between them; the index stands in the
/// description beside it. RawRecording reads both.
class RawFile : public StackFile
{
public:
    explicit RawFile(const QString &path) : StackFile(path) {}

    [[nodiscard]] QJsonObject format() const override;
    [[nodiscard]] QJsonObject entry(int frame) const override;

protected:
    void write(const StackFrame &frame) override;

private:
    struct Place
    {
        qint64 offset = 0;
        qint64 size = 0;
        quint32 checksum = 0;
    };

    std::vector<Place> m_places;
    qint64 m_next = 0;
};
