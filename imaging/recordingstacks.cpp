#include "imaging/recordingstacks.h"

#include "imaging/failurelog.h"
#include "imaging/npyfile.h"
#include "imaging/rawfile.h"
#include "imaging/stackdescription.h"
#include "imaging/tifffile.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <opencv2/core.hpp>

namespace {

void putAll(QJsonObject &into, const QJsonObject &from)
{
    for (auto value = from.begin(); value != from.end(); ++value)
        into[value.key()] = value.value();
}

} // namespace

QStringList RecordingStacks::open(const RecordingFiles &files, const RecordingForms &forms,
                                  const RecordingFacts &facts, int wanted)
{
    QStringList failures = close();
    m_facts = facts;
    m_wanted = wanted;
    m_needsFloats = forms.tiff || forms.npy;
    m_times.clear();
    const auto add = [&](const QString &path, auto make) {
        failures << guardedFile(path, [&] {
            m_stacks.push_back(make());
            return m_stacks.back()->openingFailure();
        });
    };
    if (forms.tiff)
        add(files.tiff(), [&] { return std::make_unique<TiffFile>(files.tiff(), facts, wanted); });
    if (forms.npy)
        add(files.npy(), [&] { return std::make_unique<NpyFile>(files.npy()); });
    if (forms.raw)
        add(files.raw(), [&] { return std::make_unique<RawFile>(files.raw()); });
    return failures;
}

void RecordingStacks::addJobs(const RecordedFrame &frame, std::vector<FileJob> &jobs)
{
    if (m_stacks.empty())
        return;
    m_times.push_back(frame.time);
    if (m_needsFloats)
        convert(frame.currents);
    for (const auto &stack : m_stacks) {
        jobs.emplace_back([this, &frame, stack = stack.get()] {
            return guardedFile(stack->path(), [&] {
                return stack->append({.currents = m_floats, .raw = frame.raw, .time = frame.time});
            });
        });
    }
}

/// Each to the nearest 32-bit number, once for all files.
void RecordingStacks::convert(std::span<const double> currents)
{
    m_floats.resize(currents.size());
    constexpr std::size_t stripe = 65536; // what stays in a core's cache
    const auto stripes = static_cast<int>((currents.size() + stripe - 1) / stripe);
    cv::parallel_for_(cv::Range(0, stripes), [&](const cv::Range &range) {
        const std::size_t begin = static_cast<std::size_t>(range.start) * stripe;
        const std::size_t end = qMin(static_cast<std::size_t>(range.end) * stripe, currents.size());
        const auto length = static_cast<int>(end - begin);
        const cv::Mat from(1, length, CV_64F,
                           const_cast<double *>(currents.data() + begin)); // NOLINT(*-const-cast): only read
        cv::Mat to(1, length, CV_32F, m_floats.data() + begin);
        from.convertTo(to, CV_32F);
    });
}

QStringList RecordingStacks::close()
{
    QStringList failures;
    for (const auto &stack : m_stacks) {
        failures << guardedFile(stack->path(), [&] { return stack->finish(); });
        if (failures.last().isEmpty() && stack->frames() > 0)
            failures << guardedFile(RecordingFiles::description(stack->path()),
                                    [&] { return writeDescription(*stack); });
    }
    m_stacks.clear();
    return failures;
}

QString RecordingStacks::writeDescription(const StackFile &stack) const
{
    QJsonObject description{{QStringLiteral("file"), QFileInfo(stack.path()).fileName()},
                            {QStringLiteral("frames_wanted"), m_wanted}};
    putAll(description, stack.format());
    putAll(description, StackDescription::ofRecording(m_facts));
    QJsonArray frames;
    for (int frame = 0; frame < stack.frames(); ++frame) {
        QJsonObject entry{{QStringLiteral("number"), frame + 1},
                          {QStringLiteral("time"),
                           StackDescription::timeText(m_times.at(static_cast<std::size_t>(frame)))}};
        putAll(entry, stack.entry(frame));
        frames.append(entry);
    }
    description[QStringLiteral("frames")] = frames;
    OutputFile file(RecordingFiles::description(stack.path()));
    file.write(QJsonDocument(description).toJson());
    return file.finish();
}
