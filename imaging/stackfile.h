#pragma once

#include "imaging/outputfile.h"

#include <QByteArrayView>
#include <QJsonObject>
#include <QString>

#include <span>

/// What a file of all frames may store of one of them: seen, not kept.
struct StackFrame
{
    std::span<const float> currents; ///< nA, row by row
    QByteArrayView raw;              ///< as it came over the cable
    qint64 time = 0;                 ///< milliseconds since 1970, UTC
};

/// One file of all frames of a recording, one behind the other. When it cannot take a frame, the frames
/// before are kept: it gets its name, and is whole with those. One thread at a time; blocks for the disk.
class StackFile
{
public:
    virtual ~StackFile() = default;
    Q_DISABLE_COPY_MOVE(StackFile)

    [[nodiscard]] const QString &path() const { return m_path; }
    /// Frames that are in it, whole.
    [[nodiscard]] int frames() const { return m_frames; }
    /// Empty when the file could be opened, otherwise a line with its path and the reason.
    [[nodiscard]] const QString &openingFailure() const { return m_openingFailure; }

    /// Empty, or a line with the path and the reason when the file does not take the frame; told once, and
    /// frames that come later are dropped.
    [[nodiscard]] QString append(const StackFrame &frame);

    /// Closes the file and gives it its name; without a frame nothing stays of it. Empty, or a line with its
    /// path and the reason.
    [[nodiscard]] QString finish();

    /// What is to be known to read it: format, shape, type, unit.
    [[nodiscard]] virtual QJsonObject format() const = 0;
    /// What is to be known of one frame beside its number and time, counted from 0.
    [[nodiscard]] virtual QJsonObject entry(int frame) const;

protected:
    explicit StackFile(const QString &path, OutputFile::Access access = OutputFile::Access::Write);

    /// Writes a frame at the end of file().
    virtual void write(const StackFrame &frame) = 0;
    /// Ends the file with the frames that it has.
    virtual void complete() {}
    /// Takes back a frame that did not get there whole: the file ends at `end` again. False when it cannot.
    [[nodiscard]] virtual bool takeBack(qint64 end);

    [[nodiscard]] OutputFile &file() { return m_file; }

private:
    QString m_path;
    OutputFile m_file;
    QString m_openingFailure;
    bool m_isBroken = false; ///< takes no more
    int m_frames = 0;
    qint64 m_end = 0; ///< behind the last whole frame
};
