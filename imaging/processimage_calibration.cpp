#include "imaging/failurelog.h"
#include "imaging/processimage.h"

void ProcessImage::finishCapture()
{
    caliFrameIndex = 0;
    if (fullOffFlag) {
        fullOffFlag = false;
        writeReference(QStringLiteral("/data_fulloff.csv"), fullOffData);
        Q_EMIT setMinSuccess();
    }
    if (fullOnFlag) {
        fullOnFlag = false;
        writeReference(QStringLiteral("/data_fullon.csv"), fullOnData);
        Q_EMIT setMaxSuccess();
    }
}

void ProcessImage::writeReference(const QString &fileName, const std::vector<double> &reference)
{
    const QString path = calibPath + fileName;
    const QString failure = guardedFile(path, [&] { return referenceCsv.write(path, reference); });
    if (!failure.isEmpty())
        reportFailure(failure);
}
