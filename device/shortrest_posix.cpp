#include "device/shortrest.h"

#include <QThread>

struct ShortRest::System
{
};

ShortRest::ShortRest() = default;

ShortRest::~ShortRest() = default;

void ShortRest::oneMillisecond()
{
    QThread::msleep(1);
}
