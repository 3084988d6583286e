#pragma once

#include "device/protocol/timing.h"

#include <QString>

#include <optional>

/// What whoever records knows of the detector and its settings when a recording begins, for the descriptions
/// beside the recorded files. What is not known stays empty and is written as null.
struct RecordingFacts
{
    /// In volts.
    struct Voltages
    {
        double vss = 0.0;
        double vcom = 0.0;
        double von = 0.0;
        double voff = 0.0;
    };

    QString serial = {};                  ///< of the detector
    QString library = {};                 ///< path of the driver library
    std::optional<bool> isSimulated = {}; ///< the driver library says that it simulates
    std::optional<int> currentRange = {}; ///< nA
    std::optional<Voltages> voltages = {};
    std::optional<Timing> timing = {};
    std::optional<int> testPattern = {};   ///< 1 to 5, 0 for the sensor's own picture
    std::optional<bool> isCalibrated = {}; ///< grey levels lie between the references; currents are the same
};
