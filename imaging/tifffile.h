#pragma once

#include "imaging/recordingfacts.h"
#include "imaging/stackfile.h"

struct tiff;

/// The currents of all frames as pages of one TIFF file: 32-bit floats, not compressed, one strip a page.
///
/// A classic file ends at 4 GiB; one that may not be enough is a BigTIFF from its first byte. The first
/// page's ImageDescription tells all that is known of the recording, those of the others their frame.
class TiffFile : public StackFile
{
public:
    /// `wanted`: how many frames are to come; 0 or less when that is not known.
    TiffFile(const QString &path, const RecordingFacts &facts, int wanted);
    ~TiffFile() override;
    Q_DISABLE_COPY_MOVE(TiffFile)

    [[nodiscard]] QJsonObject format() const override;

    /// Whether so many frames need a BigTIFF; 0 or less when they are not known.
    [[nodiscard]] static bool needsBigTiff(int frames);

protected:
    void write(const StackFrame &frame) override;
    void complete() override;
    [[nodiscard]] bool takeBack(qint64 end) override;

private:
    friend struct TiffAccess; // the calls that the library makes

    void open();
    void close();
    void setTags(const StackFrame &frame);
    [[nodiscard]] QByteArray pageDescription(const StackFrame &frame) const;

    RecordingFacts m_facts;
    bool m_isBig;
    tiff *m_tiff = nullptr;
    qint64 m_position = 0;  ///< where the library stands in the file
    qint64 m_pageBegin = 0; ///< of the page that is being written
    QByteArray m_link;      ///< what the page before had in place of the way to this one
    qint64 m_linkOffset = 0;
};
