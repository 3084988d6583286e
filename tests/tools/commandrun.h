#pragma once

#include "tests/tools/acquirerun.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

/// A command on a virtual detector that notes what is written to it.
class Commands : public Acquire
{
protected:
    void command(const QString &name, const QStringList &arguments = {})
    {
        run(QStringList{name, QStringLiteral("--library"), QStringLiteral(QV1K_NOTING_LIBRARY)} + arguments);
    }

    /// The one object that --json prints.
    [[nodiscard]] QJsonObject summary() const
    {
        EXPECT_EQ(output.count(QLatin1Char('\n')), 1) << qPrintable(output);
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(output.toUtf8(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << qPrintable(error.errorString());
        return document.object();
    }

    /// What was written to the detector, frame by frame.
    [[nodiscard]] QList<QByteArray> written() const
    {
        QList<QByteArray> frames = folder.readText(QStringLiteral("written.txt")).split('\n');
        frames.removeLast();
        return frames;
    }

    void expectRefusal(const QString &text) const
    {
        EXPECT_EQ(exitCode, 2);
        EXPECT_EQ(errors, QStringLiteral("qv1k-acquire: %1 (--help lists the options)\n").arg(text));
        EXPECT_FALSE(QDir(folder.path()).exists(QStringLiteral("Logs"))) << "nothing was opened";
    }

    const QString json = QStringLiteral("--json");
    const QStringList fourVolts{QStringLiteral("--von"),  QStringLiteral("15"),    QStringLiteral("--voff"),
                                QStringLiteral("-14.5"),  QStringLiteral("--vss"), QStringLiteral("0.75"),
                                QStringLiteral("--vcom"), QStringLiteral("-10")};
};
