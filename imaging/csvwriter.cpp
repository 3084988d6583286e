#include "imaging/csvwriter.h"

#include "device/protocol/frameformat.h"
#include "imaging/csvnumber.h"
#include "imaging/outputfile.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::size_t lineValues = FrameFormat::side;
constexpr std::size_t lineRoom = lineValues * CsvNumber::maxChars;
constexpr std::size_t stripeCount = 16;
constexpr std::size_t maxLines = FrameFormat::side;

template <typename Number>
char *appendLine(char *out, std::span<const Number> values)
{
    for (const Number value : values) {
        out = CsvNumber::append(out, value);
        *out++ = ',';
    }
    out[-1] = '\n';
    return out;
}

} // namespace

template <typename Number>
QString CsvWriter::writeLines(const QString &path, std::span<const Number> values)
{
    if (!m_text)
        m_text = std::make_unique_for_overwrite<char[]>(maxLines * lineRoom);

    const std::size_t lines = std::min(values.size() / lineValues, maxLines);
    const auto firstLine = [lines](std::size_t stripe) {
        return lines * stripe / stripeCount;
    };
    const auto textOf = [this, firstLine](std::size_t stripe) {
        return m_text.get() + firstLine(stripe) * lineRoom;
    };
    std::array<char *, stripeCount> ends{};

    cv::parallel_for_(cv::Range(0, static_cast<int>(stripeCount)), [&](const cv::Range &range) {
        for (auto stripe = static_cast<std::size_t>(range.start);
             stripe < static_cast<std::size_t>(range.end); ++stripe) {
            char *out = textOf(stripe);
            for (std::size_t line = firstLine(stripe); line < firstLine(stripe + 1); ++line)
                out = appendLine(out, values.subspan(line * lineValues, lineValues));
            ends[stripe] = out;
        }
    });

    // Moved together, so that the file is written in one piece.
    char *end = m_text.get();
    for (std::size_t stripe = 0; stripe < stripeCount; ++stripe) {
        const auto length = static_cast<std::size_t>(ends[stripe] - textOf(stripe));
        std::memmove(end, textOf(stripe), length);
        end += length;
    }
    OutputFile file(path);
    file.write(QByteArrayView(m_text.get(), end));
    return file.finish();
}

QString CsvWriter::write(const QString &path, std::span<const double> values)
{
    return writeLines(path, values);
}

QString CsvWriter::write(const QString &path, std::span<const int> values)
{
    return writeLines(path, values);
}
