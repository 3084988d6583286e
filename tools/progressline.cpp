#include "tools/progressline.h"

#include "device/protocol/frameformat.h"

#include <QString>

#include <cmath>
#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

bool isTerminal(FILE *file)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(file)) != 0;
#else
    return isatty(fileno(file)) != 0;
#endif
}

} // namespace

ProgressLine::ProgressLine(bool isWanted) : m_isShown(isWanted && isTerminal(stderr)) {}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(const State &state)
{
    if (!m_isShown)
        return;
    write(textOf(state));
}

void ProgressLine::clear()
{
    if (m_shown == 0)
        return;
    write({});
    std::fputs("\r", stderr);
    std::fflush(stderr);
}

/// Blanks over what is longer of the line before: not every console knows how to clear one.
void ProgressLine::write(const QString &text)
{
    std::fprintf(stderr, "\r%s", qUtf8Printable(text.leftJustified(m_shown)));
    std::fflush(stderr);
    m_shown = text.size();
}

QString ProgressLine::textOf(const State &state)
{
    constexpr double bytesPerMegabyte = 1e6;
    const double rate = state.seconds > 0.0 ? state.frames / state.seconds : 0.0;
    double left = state.wantedSeconds - state.seconds;
    QString frames = QString::number(state.frames);
    if (state.wantedFrames > 0) {
        frames += QStringLiteral(" of %1").arg(state.wantedFrames);
        left = rate > 0.0 ? (state.wantedFrames - state.frames) / rate : 0.0;
    }
    return frames +
           QString::asprintf(" frames  %.2f frames/s  %.1f MB/s  ", rate,
                             rate * static_cast<double>(FrameFormat::frameBytes) / bytesPerMegabyte) +
           QStringLiteral("%1 waiting  %2 s left").arg(state.waiting).arg(std::ceil(std::fmax(left, 0.0)));
}
