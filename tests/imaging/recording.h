#pragma once

#include "imaging/processimage.h"
#include "imaging/recordingfiles.h"
#include "tests/imaging/frames.h"
#include "tests/support/workingfolder.h"

#include <QDir>
#include <QSignalSpy>

/// A pipeline that records into the folder "save" of an empty working folder, under the name "T".
struct Recording
{
    WorkingFolder folder;
    bool save = QDir(folder.path()).mkdir("save");
    RecordingFiles stored{folder.filePath("save"), "T"};
    ProcessImage pipeline;
    QSignalSpy messages{&pipeline, &ProcessImage::saveMessage};

    explicit Recording(int frames = 1)
    {
        pipeline.setLogPath(stored.root);
        pipeline.setTimeStamp(stored.name);
        pipeline.setSaveFrameTotal(frames);
    }

    void feed(int frames)
    {
        for (int n = 1; n <= frames; ++n)
            pipeline.onReadReady(Frames::useful(static_cast<quint32>(n)));
    }

    [[nodiscard]] QStringList files() const
    {
        return QDir(stored.folder()).entryList(QDir::Files | QDir::System, QDir::Name);
    }

    [[nodiscard]] QList<int> progress() const
    {
        QList<int> values;
        for (const QVariantList &arguments : messages)
            values << arguments.first().toInt();
        return values;
    }
};
