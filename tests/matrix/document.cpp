#include "tests/matrix/document.h"

#include "tests/matrix/cell.h"

namespace {

constexpr const char *introduction =
    R"(# What happens when something goes wrong

An instrument is left alone overnight: nothing may end it, hold it up for ever, or tell something wrong. The table below is
the whole of a test suite. A row is what the operator does, a column is what goes wrong at that moment, and each cell is a
test of its own through the real window, or the real `qv1k-acquire`, on the virtual detector:

    ctest --preset release -L matrix

The program loads a driver library that stands between it and the virtual detector's; there the fault happens, on the bytes
that would go over the cable. Each cell holds the program to five things:

1. **Message**: the texts of the boxes that the operator has to answer, these and no other.
2. **Window**: what it looks like afterwards, every button included.
3. **Log**: these lines of those listed below, and none of the others. "Perhaps": it depends on which of two threads is
   first.
4. **Within**: the seconds that the program's own waits may take. A test allows a minute more, for a slow machine.
5. The next normal flow works: connect where that is needed, play, a picture, stop, without a message. A window that is gone
   is opened anew; after `qv1k-acquire` a run without a fault has to succeed.

Under the sanitizers and on Windows the cells are left out in which the program waits for 2 s and more: what it does there is
what it does in the others, only later.

This file is written by the suite (`cmake --build --preset release --target reliability-document`), and a test fails when it
is not what the suite prints.
)";

const char *textOf(State state)
{
    switch (state) {
    case State::Disconnected:
        return "disconnected";
    case State::Idle:
        return "idle";
    case State::Sampling:
        return "sampling";
    case State::Silent:
        return "silent";
    case State::Closed:
        return "closed";
    case State::Succeeded:
        return "exit status 0";
    case State::Failed:
        return "exit status 1";
    }
    return "";
}

std::string textOfLog(std::uint32_t log)
{
    std::string text;
    for (const LogText &line : logTexts()) {
        if ((log & line.line) != 0U)
            text += (text.empty() ? "" : ", ") + std::string(line.text);
    }
    return text.empty() ? "–" : text;
}

std::string legends()
{
    std::string text = "\n## What goes wrong\n\n| Column | What it is |\n|---|---|\n";
    for (const Column &column : allColumns())
        text += "| " + std::string(column.name) + " | " + column.meaning + " |\n";
    text +=
        "\n## The window\n\n"
        "| State | Connect button | Sampling | Set | Play, Save, engineering dialog | Charge is asked for |\n"
        "|---|---|---|---|---|---|\n"
        "| disconnected | Connect | no | enabled | enabled | no |\n"
        "| idle | Disconnect | no | enabled | enabled | every 2 minutes |\n"
        "| sampling | Disconnect | yes, pictures come | disabled | enabled | no |\n"
        "| silent | Disconnect | yes, a sign at the frame rate says that nothing comes | disabled | enabled "
        "| no |\n"
        "| closed | the window is gone | | | | |\n\n"
        "Of `qv1k-acquire` it is the exit status, and the message is its line on standard error; \"...\" are "
        "the "
        "system's own words.\n";
    text += "\n## Lines of the log\n\n| Line | Meaning |\n|---|---|\n";
    for (const LogText &line : logTexts())
        text += "| " + std::string(line.text) + " | " + line.meaning + " |\n";
    return text;
}

std::string lineOf(const Entry &entry)
{
    const std::string name = columnOf(entry.fault).name;
    const Expectation &expected = entry.expected;
    const std::string page = expected.page.empty() ? "" : "; \"" + expected.page + "\"";
    const std::string perhaps = expected.perhaps == Nothing ? "" : "; perhaps " + textOfLog(expected.perhaps);
    const std::string boxes = expected.boxes.empty() ? "–" : expected.boxes;
    return "| " + name + " | " + boxes + " | " + textOf(expected.state) + page + " | " +
           textOfLog(expected.log) + perhaps + " | " + std::to_string(expected.seconds) + " s |\n";
}

std::string namesOf(const std::vector<Fault> &faults)
{
    std::string text;
    for (const Fault fault : faults)
        text += (text.empty() ? "" : ", ") + std::string(columnOf(fault).name);
    return text;
}

std::string section(const Group &group)
{
    std::string text = "\n## " + std::string(group.title) + "\n\n";
    std::string rows;
    for (const Row &row : group.rows)
        rows += (rows.empty() ? "" : ", ") + std::string(row.name);
    text += (group.rows.size() > 1 ? "Rows, each with every column: " : "Row: ") + rows + ".\n\n";
    text += "| Column | Message | Window | Log | Within |\n|---|---|---|---|---|\n";
    for (const Entry &entry : group.entries)
        text += lineOf(entry);
    if (!group.senseless.empty())
        text += "\nNot tested here:\n\n";
    for (const Senseless &senseless : group.senseless)
        text += "- " + namesOf(senseless.faults) + ": " + senseless.why + "\n";
    return text;
}

} // namespace

std::string reliabilityDocument()
{
    std::string text = introduction;
    text += "\nThese are " + std::to_string(allCells().size()) + " cells.\n" + legends();
    for (const Group &group : allGroups())
        text += section(group);
    return text;
}
