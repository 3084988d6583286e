// Runs a program on a detector behind an emulated bridge, for looking at it by hand. The window, say, with
// D2xxLibrary=ftdi in config.ini:
//   LD_PRELOAD=libumockdev-preload.so.0 onbridge qv1k

#include "tests/ftdi/bridge/detectorlines.h"
#include "tests/ftdi/bridge/usbbed.h"

#include <QProcess>

#include <cstdio>

int main(int argc, char **argv)
{
    UsbBed bed;
    if (argc < 2 || !UsbBed::isAtHand()) {
        std::fputs("usage: LD_PRELOAD=libumockdev-preload.so.0 onbridge <program> [<argument> ...]\n",
                   stderr);
        return 2;
    }
    bed.plugIn(1, {}, std::make_unique<DetectorLines>(simulator::Settings()));
    QStringList arguments;
    for (int i = 2; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return QProcess::execute(QString::fromLocal8Bit(argv[1]), arguments);
}
