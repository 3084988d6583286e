#pragma once

#include "imaging/stackfile.h"

/// The currents of all frames as one array of NumPy's format, version 1.0: 32-bit floats, frames x rows x
/// columns. Its header has room for any number of frames, which is written when the recording ends.
class NpyFile : public StackFile
{
public:
    explicit NpyFile(const QString &path);

    [[nodiscard]] QJsonObject format() const override;

protected:
    void write(const StackFrame &frame) override;
    void complete() override;
};
