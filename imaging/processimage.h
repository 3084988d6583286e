#pragma once

#include "device/protocol/frameformat.h"
#include "imaging/csvwriter.h"
#include "imaging/pixelkernel.h"
#include "imaging/recorder.h"

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QString>

#include <vector>

/// Results that ProcessImage's declared but unused signals carry.
struct result
{
};
struct errormessage
{
};

/// The image pipeline: turns each raw frame into photocurrents and a grey picture, takes the calibration
/// references, and records.
///
/// Lives on the GUI thread and works there, frame after frame; the pixels of a frame are spread over
/// OpenCV's workers. The link must exist before it is made, which connects the link's read_ready() to
/// onReadReady(); without a link frames come by onReadReady() alone.
class ProcessImage : public QObject
{
    Q_OBJECT

public:
    explicit ProcessImage(QObject *parent = nullptr);

    /// Decodes and renders one raw frame (4 bytes a pixel, most significant first; missing pixels are 0,
    /// further bytes are ignored) and takes it into a running calibration capture.
    /// Returns a 1024 x 1024 picture of format Grayscale8.
    QImage processImage(QByteArray &m_data);

    /// One frame, as onReadReady() takes it, that came at that time: milliseconds since 1970, UTC.
    void takeFrame(QByteArray bytes, qint64 time);

    /// Current of the pixel at index x * 1024 + y of the last finished frame in nanoamperes with four
    /// decimals; "0.0" when there is no such element.
    [[nodiscard]] QString pixelValueText(int x, int y) const;

    void setContrastRatio(double ratio) { contrastRatio = ratio; }
    void setSaveFrameTotal(int frames) { recorder.setFrameTotal(frames); }
    /// Name of the next recording, see RecordingFiles::nameFor(); the current time when none is left of it.
    void setTimeStamp(const QString &name);
    /// Where frames come from, as the log's lines of recordings shall say it.
    void setProvenance(const QString &text) { recorder.setProvenance(text); }
    /// Root folder of the next recordings; an empty path is ignored.
    void setLogPath(const QString &path) { recorder.setRoot(path); }
    /// Keeps the current range that the detector was set to, in nA. Decoding and rendering go by their
    /// constants in every range.
    void setCurrentRange(int nanoamperes) { currentRange = nanoamperes; }

    /// Root folder of the next recording.
    [[nodiscard]] const QString &logPath() const { return recorder.next().root; }
    /// Folder of the recording that runs or, between two, of the last; empty before the first.
    [[nodiscard]] QString recordingFolder() const { return recorder.folder(); }

    /// From how many frames a reference is taken: their mean. Between captures.
    void setCaliFrameCount(int frames) { caliFrameCount = frames; }
    [[nodiscard]] int getCaliFrameCount() const { return caliFrameCount; }
    [[nodiscard]] int getSaveFrameTotal() const { return recorder.frameTotal(); }
    [[nodiscard]] int getCurrentRange() const { return currentRange; }
    /// Whether the log path holds files of a recording of that name already; false for an empty name, which
    /// becomes the time.
    [[nodiscard]] bool hasRecording(const QString &name) const;
    [[nodiscard]] bool isSaving() const { return recorder.isRunning(); }
    /// Files of the recording that are missing or not whole, see Recorder.
    [[nodiscard]] int failedFiles() const { return recorder.failedFiles(); }
    /// What has become of the recording that runs or, between two, of the last.
    [[nodiscard]] const RecordingResult &recordingResult() const { return recorder.result(); }

    /// Begins a recording of the next frames, as many as setSaveFrameTotal() says, in the folder
    /// `<log path>/<time stamp>/`.
    void startSaving(bool saveData, bool savePicture, bool saveVideo);
    /// The same in any of the forms. `facts` are told beside the files; whether grey levels are calibrated is
    /// known here.
    void startSaving(const RecordingForms &forms, RecordingFacts facts);
    /// Stores the picture, and the data it was made from, if a recording is running. Blocks until the
    /// frame's files are written.
    void saveFrame(const QImage &image);
    /// Ends a running recording early; false when none was running.
    bool stopSaving();
    /// Writes "SetParameterData.txt" into the recording's folder.
    void writeParameterFile(const QString &text);

    /// Frame of currents (nA), row-major, that was processed last; empty before the first.
    [[nodiscard]] const std::vector<double> &lastFrame() const { return lastFrameData; }
    [[nodiscard]] const std::vector<int> &grayLevels() const { return grayData; }

    bool fullOnFlag = false;         ///< a bright reference is being captured
    bool fullOffFlag = false;        ///< a dark reference is being captured
    bool caliEnabled = false;        ///< the calibrated grey mapping is in force
    std::vector<double> fullOffData; ///< dark reference, nA
    std::vector<double> fullOnData;  ///< bright reference, nA

public Q_SLOTS:
    /// One frame: picture, then sendImagetoMain(), then the recording.
    void onReadReady(QByteArray m_data);

Q_SIGNALS:
    void sendImagetoMain(QImage displayImage);
    void saveMessage(int index);
    void caliMessage(int index);
    void dataProcessed(::result); // qualified: the meta-object code has a variable of that name
    void errorOccurred(errormessage);
    void disConnect();
    void finished();
    void setMaxSuccess();
    void setMinSuccess();

private:
    void processPixels(const QByteArray &bytes, uchar *picture);
    void finishCapture();
    void writeReference(const QString &fileName, const std::vector<double> &reference);

    std::vector<double> frameData;
    std::vector<int> grayData;
    std::vector<double> lastFrameData;
    int pixelCount = FrameFormat::pixels;
    int caliFrameCount = 1;
    int rangeMax = PixelKernel::Mapping().rangeMax;
    int gainNumerator = PixelKernel::Mapping().gainNumerator;
    int gainDenominator = PixelKernel::Mapping().gainDenominator;
    int caliFrameIndex = 0;
    QByteArray rawFrame; ///< while it is processed and stored
    qint64 frameTime = 0;
    int currentRange = 150;
    QString calibPath;
    double contrastRatio = 1048576.0;
    CsvWriter referenceCsv;
    Recorder recorder;
};
