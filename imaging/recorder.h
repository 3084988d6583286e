#pragma once

#include "imaging/csvwriter.h"
#include "imaging/recordedframe.h"
#include "imaging/recordingfacts.h"
#include "imaging/recordingfiles.h"
#include "imaging/recordinglog.h"
#include "imaging/recordingstacks.h"

#include <QString>
#include <QThreadPool>

#include <memory>

class VideoFile;

/// Stores frames as files: folder, names, forms and numbers of a recording, and what failed of it.
///
/// Knows no signal and no clock: whoever has frames calls. One thread at a time; the files of a frame are
/// written side by side on OpenCV's workers. A file that is not whole leaves a line in the log and counts,
/// also when an exception was the reason; the recording goes on. Its begin and its end are told in the log,
/// and what it wrote is flushed to the disk afterwards, recording after recording, on a thread of the
/// recorder's own.
class Recorder
{
public:
    /// Recordings lie below `root` and are named `name`, until others are set.
    Recorder(const QString &root, const QString &name);
    /// Ends a running recording, and waits until what was recorded is on the disk.
    ~Recorder();
    Q_DISABLE_COPY_MOVE(Recorder)

    /// The folder in which recordings get theirs; it must exist. An empty path is ignored. Like the name, it
    /// holds for the next recording: a running one stays where it began.
    void setRoot(const QString &path);
    void setName(const QString &name) { m_next.name = name; }
    /// Where frames come from, for the log.
    void setProvenance(const QString &text) { m_provenance = text; }
    /// What is told of detector and settings beside the files of the next recording.
    void setFacts(const RecordingFacts &facts) { m_facts = facts; }
    /// How many frames a recording takes. With a number that is passed already, or never met, it runs until
    /// it is stopped.
    void setFrameTotal(int frames) { m_saveFrameTotal = frames; }

    /// Where the next recording goes.
    [[nodiscard]] const RecordingFiles &next() const { return m_next; }
    [[nodiscard]] int frameTotal() const { return m_saveFrameTotal; }
    [[nodiscard]] bool isRunning() const { return m_savingActive; }
    /// Frames of the recording so far; 0 again after a stop().
    [[nodiscard]] int storedFrames() const { return m_savedFrames; }
    /// Files since the last start that could not be opened or written whole, videos that did not open or do
    /// not read back as the frames that went in.
    [[nodiscard]] int failedFiles() const { return m_result.failed; }
    /// What has become of the recording that runs or, between two, of the last. After a stop() too.
    [[nodiscard]] const RecordingResult &result() const { return m_result; }

    /// Folder of the recording that runs or, between two, of the last; empty before the first.
    [[nodiscard]] QString folder() const { return m_files.name.isEmpty() ? QString() : m_files.folder(); }

    /// Begins a recording, a running one ends as it is. Makes the folder if it is missing. Without any form
    /// nothing runs afterwards.
    void start(RecordingForms forms);

    /// Stores the frame under the next number. Blocks until its files are written. Only while one runs; it
    /// still runs afterwards, also after the last frame.
    void store(const RecordedFrame &frame);

    /// Ends the recording when it has all its frames. Blocks while the video is closed and read back.
    void endWhenComplete();

    /// Ends the recording early; false when none was running.
    bool stop();

    /// Writes the parameter file into the folder of the running recording, or of the next.
    void writeParameters(const QString &text);

private:
    void openVideo();
    void closeVideo();
    void end();
    void flushToDisk();
    void countFailure(const QString &failure);

    RecordingFiles m_next;  ///< where the next recording goes
    RecordingFiles m_files; ///< of the running one, or the last
    RecordingForms m_forms;
    RecordingResult m_result;
    QString m_provenance;
    RecordingFacts m_facts;
    int m_saveFrameTotal = 5;
    int m_savedFrames = 0;
    bool m_savingActive = false;
    std::unique_ptr<VideoFile> m_videoWriter; ///< of a running recording
    RecordingStacks m_stacks;                 ///< of a running recording
    CsvWriter m_dataCsv;
    CsvWriter m_grayCsv;
    QThreadPool m_flushing; ///< one thread; its end is waited for
};
