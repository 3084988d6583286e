#include "imaging/tifffile.h"

#include "device/protocol/frameformat.h"
#include "imaging/stackdescription.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonDocument>

#include <tiffio.h>

#include <array>
#include <cstdio>
#include <memory>

static_assert(std::is_same_v<TIFF, tiff>);

// The library writes through OutputFile, which knows the system's reason for a failure and writes to names of
// any script.
struct TiffAccess
{
    static tmsize_t read(thandle_t handle, void *data, tmsize_t size)
    {
        TiffFile &self = *static_cast<TiffFile *>(handle);
        const qint64 got =
            self.file().readAt(self.m_position, {static_cast<char *>(data), static_cast<std::size_t>(size)});
        self.m_position += qMax(qint64{0}, got);
        return got;
    }

    static tmsize_t write(thandle_t handle, void *data, tmsize_t size)
    {
        TiffFile &self = *static_cast<TiffFile *>(handle);
        keepLink(self, size);
        self.file().writeAt(self.m_position, QByteArrayView(static_cast<const char *>(data), size));
        if (!self.file().failure().isEmpty())
            return -1;
        self.m_position += size;
        return size;
    }

    /// The only thing that is written before the page's begin is the way to it, in the page before.
    static void keepLink(TiffFile &self, tmsize_t size)
    {
        if (self.m_position >= self.m_pageBegin || !self.m_link.isEmpty())
            return;
        QByteArray before(size, '\0');
        const qint64 got =
            self.file().readAt(self.m_position, {before.data(), static_cast<std::size_t>(before.size())});
        self.m_link = before.first(qMax(qint64{0}, got));
        self.m_linkOffset = self.m_position;
    }

    static toff_t seek(thandle_t handle, toff_t offset, int whence)
    {
        TiffFile &self = *static_cast<TiffFile *>(handle);
        const auto distance = static_cast<qint64>(offset);
        if (whence == SEEK_CUR)
            self.m_position += distance;
        else
            self.m_position = distance + (whence == SEEK_END ? self.file().size() : 0);
        return static_cast<toff_t>(self.m_position);
    }

    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t handle)
    {
        return static_cast<toff_t>(static_cast<TiffFile *>(handle)->file().size());
    }
    static int map(thandle_t, void **, toff_t *) { return 0; }
    static void unmap(thandle_t, void *, toff_t) {}

    /// What is not the system's reason is the library's own.
    static int error(TIFF *, void *handle, const char *, const char *format, va_list arguments)
    {
        static_cast<TiffFile *>(handle)->file().giveUp(QString::vasprintf(format, arguments));
        return 1;
    }
    static int warning(TIFF *, void *, const char *, const char *, va_list) { return 1; }
};

TiffFile::TiffFile(const QString &path, const RecordingFacts &facts, int wanted)
    : StackFile(path, OutputFile::Access::WriteAndRead), m_facts(facts), m_isBig(needsBigTiff(wanted))
{
}

TiffFile::~TiffFile()
{
    close();
}

bool TiffFile::needsBigTiff(int frames)
{
    // A page's tags and texts are a few hundred bytes, the first page's some more.
    constexpr qint64 page = FrameFormat::frameBytes + 2048;
    constexpr qint64 classicEnd = (qint64{1} << 32) - 65536;
    return frames <= 0 || frames * page > classicEnd;
}

void TiffFile::open()
{
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                   &TIFFOpenOptionsFree);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &TiffAccess::error, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &TiffAccess::warning, this);
    m_tiff = TIFFClientOpenExt("", m_isBig ? "w8" : "w", this, &TiffAccess::read, &TiffAccess::write,
                               &TiffAccess::seek, &TiffAccess::close, &TiffAccess::size, &TiffAccess::map,
                               &TiffAccess::unmap, options.get());
}

void TiffFile::close()
{
    if (m_tiff != nullptr)
        TIFFClose(m_tiff);
    m_tiff = nullptr;
}

void TiffFile::write(const StackFrame &frame)
{
    if (m_tiff == nullptr)
        open();
    if (m_tiff == nullptr)
        return;
    m_pageBegin = file().size();
    m_link.clear();
    setTags(frame);
    // As it stands in memory: nothing is copied on its way to the file.
    const auto size = static_cast<tmsize_t>(frame.currents.size_bytes());
    void *values =
        const_cast<float *>(frame.currents.data()); // NOLINT(*-const-cast): the library only reads it
    if (TIFFWriteRawStrip(m_tiff, 0, values, size) != size || TIFFWriteDirectory(m_tiff) == 0)
        file().giveUp(QStringLiteral("libtiff"));
}

void TiffFile::setTags(const StackFrame &frame)
{
    const std::array<std::pair<ttag_t, int>, 10> numbers{{{TIFFTAG_IMAGEWIDTH, FrameFormat::side},
                                                          {TIFFTAG_IMAGELENGTH, FrameFormat::side},
                                                          {TIFFTAG_ROWSPERSTRIP, FrameFormat::side},
                                                          {TIFFTAG_BITSPERSAMPLE, 32},
                                                          {TIFFTAG_SAMPLESPERPIXEL, 1},
                                                          {TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP},
                                                          {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK},
                                                          {TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG},
                                                          {TIFFTAG_COMPRESSION, COMPRESSION_NONE},
                                                          {TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT}}};
    for (const auto &[tag, number] : numbers)
        TIFFSetField(m_tiff, tag, number);
    const QByteArray software =
        (QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion()).toUtf8();
    const QByteArray time =
        QDateTime::fromMSecsSinceEpoch(frame.time).toString(QStringLiteral("yyyy:MM:dd hh:mm:ss")).toLatin1();
    TIFFSetField(m_tiff, TIFFTAG_SOFTWARE, software.constData());
    TIFFSetField(m_tiff, TIFFTAG_DATETIME, time.constData());
    TIFFSetField(m_tiff, TIFFTAG_IMAGEDESCRIPTION, pageDescription(frame).constData());
}

QByteArray TiffFile::pageDescription(const StackFrame &frame) const
{
    QJsonObject description{{QStringLiteral("frame"), frames() + 1},
                            {QStringLiteral("time"), StackDescription::timeText(frame.time)},
                            {QStringLiteral("unit"), QStringLiteral("nA")}};
    if (frames() == 0) {
        const QJsonObject recording = StackDescription::ofRecording(m_facts);
        for (auto fact = recording.begin(); fact != recording.end(); ++fact)
            description[fact.key()] = fact.value();
    }
    return QJsonDocument(description).toJson(QJsonDocument::Compact);
}

void TiffFile::complete()
{
    close();
}

bool TiffFile::takeBack(qint64 end)
{
    close(); // it may still try to write
    if (!StackFile::takeBack(end))
        return false;
    if (!m_link.isEmpty() && m_linkOffset < end)
        file().writeAt(m_linkOffset, m_link);
    return file().failure().isEmpty();
}

QJsonObject TiffFile::format() const
{
    return StackDescription::ofCurrents(m_isBig ? QStringLiteral("BigTIFF") : QStringLiteral("TIFF"),
                                        frames());
}
