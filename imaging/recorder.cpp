#include "imaging/recorder.h"

#include "imaging/diskflush.h"
#include "imaging/failurelog.h"
#include "imaging/outputfile.h"
#include "imaging/pictures.h"
#include "imaging/videofile.h"

#include <QDir>

#include <opencv2/core.hpp>

#include <vector>

namespace {

/// Runs the jobs side by side on OpenCV's workers and waits for all of them.
std::vector<QString> runJobs(const std::vector<FileJob> &jobs)
{
    std::vector<QString> failures(jobs.size());
    cv::parallel_for_(
        cv::Range(0, static_cast<int>(jobs.size())),
        [&](const cv::Range &range) {
            for (auto i = static_cast<std::size_t>(range.start); i < static_cast<std::size_t>(range.end); ++i)
                failures[i] = jobs[i]();
        },
        static_cast<double>(jobs.size()));
    return failures;
}

} // namespace

Recorder::Recorder(const QString &root, const QString &name) : m_next{root, name}
{
    m_flushing.setMaxThreadCount(1);
}

Recorder::~Recorder()
{
    end();
}

void Recorder::setRoot(const QString &path)
{
    if (!path.isEmpty())
        m_next.root = path;
}

void Recorder::start(RecordingForms forms)
{
    end();
    m_result = {.wanted = m_saveFrameTotal};
    if (!forms.any())
        return;

    m_savingActive = true;
    m_files = m_next;
    m_forms = forms;
    m_savedFrames = 0;
    RecordingLog::begun(m_files, forms, m_saveFrameTotal, m_provenance);
    const QString folder = m_files.folder();
    if (!QDir().exists(folder))
        QDir().mkdir(folder);
    if (forms.video)
        openVideo();
    for (const QString &failure : m_stacks.open(m_files, forms, m_facts, m_saveFrameTotal))
        countFailure(failure);
}

void Recorder::openVideo()
{
    countFailure(guardedFile(m_files.video(), [this] {
        m_videoWriter = std::make_unique<VideoFile>(m_files.video());
        return m_videoWriter->openingFailure();
    }));
}

void Recorder::store(const RecordedFrame &frame)
{
    const int number = ++m_savedFrames;
    std::vector<FileJob> jobs;
    const auto add = [&jobs](const QString &path, auto write) {
        jobs.emplace_back([path, write] { return guardedFile(path, [&] { return write(path); }); });
    };
    if (m_forms.picture)
        add(m_files.picture(number),
            [&](const QString &path) { return Pictures::savePng(path, frame.picture); });
    if (m_videoWriter) {
        jobs.emplace_back([&] {
            m_videoWriter->append(frame.picture);
            return QString();
        });
    }
    if (m_forms.data) {
        add(m_files.data(number), [&](const QString &path) { return m_dataCsv.write(path, frame.currents); });
        add(m_files.grayData(number),
            [&](const QString &path) { return m_grayCsv.write(path, frame.grayLevels); });
    }
    m_stacks.addJobs(frame, jobs);
    for (const QString &failure : runJobs(jobs))
        countFailure(failure);
    m_result.stored = number;
}

void Recorder::endWhenComplete()
{
    if (m_savedFrames == m_saveFrameTotal)
        end();
}

bool Recorder::stop()
{
    if (!m_savingActive)
        return false;
    m_savedFrames = 0;
    end();
    return true;
}

void Recorder::writeParameters(const QString &text)
{
    const QString path = (m_savingActive ? m_files : m_next).parameters();
    countFailure(guardedFile(path, [&] {
        OutputFile file(path);
        file.write(text.toUtf8());
        return file.finish();
    }));
}

void Recorder::end()
{
    if (!m_savingActive)
        return;
    m_savingActive = false;
    closeVideo();
    for (const QString &failure : m_stacks.close())
        countFailure(failure);
    m_result.wanted = m_saveFrameTotal;
    RecordingLog::ended(m_files, m_result);
    flushToDisk();
}

void Recorder::flushToDisk()
{
    m_flushing.start([files = m_files, forms = m_forms, frames = m_result.stored] {
        const QString failure = guardedFile(files.folder(), [&] {
            DiskFlush::flush(files, forms, frames);
            return QString();
        });
        if (!failure.isEmpty())
            reportFailure(failure);
    });
}

void Recorder::closeVideo()
{
    if (!m_videoWriter)
        return;
    countFailure(guardedFile(m_files.video(), [this] { return m_videoWriter->finish(); }));
    m_videoWriter.reset();
}

void Recorder::countFailure(const QString &failure)
{
    if (failure.isEmpty())
        return;
    m_result.failed += 1;
    reportFailure(failure);
}
