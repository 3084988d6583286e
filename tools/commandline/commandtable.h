#pragma once

#include <span>

/// What the command line of qv1k-acquire takes, as one table: the parser, --help, the manual page and the
/// shell's completion are made from it.
namespace CommandTable {

/// An option, or an argument without a name. Texts are one paragraph in English.
struct Option
{
    const char *names;     ///< as typed, with commas between them: "-h,--help"; without dashes an argument
    const char *value;     ///< what stands behind it: a word for it, or choices ("a|b"); null: a switch
    const char *text;      ///< what it does
    const char *otherwise; ///< its value when it is not given; null for none
    bool isRequired = false;
    bool isForHelp = false; ///< told by --help alone
};

/// A paragraph with a heading of its own, lines as they stand.
struct Section
{
    const char *heading;
    const char *text;
};

/// What can stand first behind the program's name.
struct Command
{
    const char *name;
    const char *summary;             ///< in half a line
    const char *text;                ///< what it does
    std::span<const Option> options; ///< beside the common ones
    std::span<const Section> sections;
    const char *example;
};

/// The values of an Option::value that names what is on the disk, for the shell's completion.
inline constexpr const char *folder = "folder";
inline constexpr const char *file = "file";

/// The first is what is meant without a command.
[[nodiscard]] std::span<const Command> commands();

/// Options that every command has.
[[nodiscard]] std::span<const Option> commonOptions();

/// What the exit statuses mean.
[[nodiscard]] const Section &exitStatus(const Command &command);

} // namespace CommandTable
