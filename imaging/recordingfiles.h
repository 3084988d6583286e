#pragma once

#include <QString>
#include <QStringList>

class QDateTime;

/// Which files a recording stores of its frames.
struct RecordingForms
{
    bool data = false;    ///< currents and grey levels, a CSV file of each for every frame
    bool picture = false; ///< a PNG file for every frame
    bool video = false;   ///< one MP4 file of all frames
    bool tiff = false;    ///< currents of all frames: a TIFF file of 32-bit float pages, and its description
    bool npy = false;     ///< currents of all frames: a NumPy array of 32-bit floats, and its description
    bool raw = false;     ///< all frames as they came over the cable, and their index

    [[nodiscard]] bool any() const { return data || picture || video || anyStack(); }
    /// Whether one is stored that is a file of all frames with a description beside it.
    [[nodiscard]] bool anyStack() const { return tiff || npy || raw; }
};

/// Where the files of a recording lie. Frames are counted from 1; numbers are not padded.
struct RecordingFiles
{
    QString root; ///< folder in which the recording's folder lies
    QString name; ///< of the recording: of its folder, and what the files of the frames begin with

    /// With a "/" at its end.
    [[nodiscard]] QString folder() const { return (root.endsWith(u'/') ? root : root + u'/') + name + u'/'; }

    /// Name of a recording for which `typed` was asked: that, without path separators, control characters and
    /// what the system takes in no name (Windows: <>:"|?*, dots and blanks at its end), and with "_" before
    /// the name of a device of Windows (CON, COM1, ...). `now` as "yyyyMMdd_hhmmss" when nothing but dots and
    /// blanks is left.
    [[nodiscard]] static QString nameFor(const QString &typed, const QDateTime &now);

    [[nodiscard]] QString data(int frame) const
    {
        return ofFrame(QStringLiteral("_data"), frame, QStringLiteral(".csv"));
    }
    [[nodiscard]] QString grayData(int frame) const
    {
        return ofFrame(QStringLiteral("_data_gray"), frame, QStringLiteral(".csv"));
    }
    [[nodiscard]] QString picture(int frame) const
    {
        return ofFrame(QStringLiteral("_pic"), frame, QStringLiteral(".png"));
    }
    [[nodiscard]] QString video() const { return folder() + QStringLiteral("output_video.mp4"); }
    [[nodiscard]] QString tiff() const { return folder() + name + QStringLiteral(".tif"); }
    [[nodiscard]] QString npy() const { return folder() + name + QStringLiteral(".npy"); }
    [[nodiscard]] QString raw() const { return folder() + name + QStringLiteral(".raw"); }
    /// What tells how to read one of these three: "NAME.tif.json" beside "NAME.tif".
    [[nodiscard]] static QString description(const QString &stack) { return stack + QStringLiteral(".json"); }
    /// Those of the three that are among the forms.
    [[nodiscard]] QStringList stacks(const RecordingForms &forms) const;
    [[nodiscard]] QString parameters() const { return folder() + QStringLiteral("SetParameterData.txt"); }

private:
    [[nodiscard]] QString ofFrame(const QString &form, int frame, const QString &ending) const
    {
        return folder() + name + form + QString::number(frame) + ending;
    }
};
