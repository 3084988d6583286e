#include "imaging/videofile.h"

#include <cstdio>

/// Prints how many frames can be taken out of the video that is named; fails when it does not open.
int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const auto frames = VideoFile::countFrames(QString::fromLocal8Bit(argv[1]), VideoFile::Count::Decoded);
    if (!frames)
        return 1;
    std::printf("%d\n", *frames);
    return 0;
}
