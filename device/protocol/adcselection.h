#pragma once

/// How the converter works, and the 16-bit word that tells it so. Pure functions, any thread.
struct AdcSelection
{
    enum class Operation { AOnly, AOrB, Sum, Mean }; ///< "A only", "A/B", "A+B", "(A+B)/2"
    enum class DataFormat { Bits20, Bits16 };
    enum class TestMode { Off, On };
    /// Charge range in pC; the value is its code in the word.
    enum class PcRange { Pc4, Pc7, Pc10, Pc13, Pc16, Pc19, Pc25 };

    Operation operation = Operation::AOnly;
    DataFormat dataFormat = DataFormat::Bits20;
    TestMode testMode = TestMode::Off;
    PcRange pcRange = PcRange::Pc25;

    /// Bits 15 to 11 are 0, 10 to 8 the operation, 7 is set for 20 bit, 6 for the test mode; 5 to 3 and 2 to
    /// 0 both hold the range code.
    [[nodiscard]] int word() const;
    /// The inverse; the upper five bits and the first of the two range codes are ignored. Code 7 is 25 pC.
    [[nodiscard]] static AdcSelection ofWord(int word);

    friend bool operator==(const AdcSelection &, const AdcSelection &) = default;
};
