#pragma once

#include <QString>

/// A file on its way to its name. Until it is whole it stands beside that name under another, so that what
/// has the name is always whole: what was there before, or what was written. Blocks for the disk.
///
/// A link is followed. Where something other than a file has the name (a pipe, a device), that is written
/// itself.
class PartFile
{
public:
    /// What the name ends in meanwhile.
    enum class Ending {
        Part,          ///< "a.csv.part"
        PartKeepsLast, ///< "a.part.mp4", for those who judge a file by its ending
    };

    explicit PartFile(const QString &path, Ending ending = Ending::Part);
    /// Removes what was not finished.
    ~PartFile();
    Q_DISABLE_COPY_MOVE(PartFile)

    /// The name in the end.
    [[nodiscard]] const QString &path() const { return m_path; }
    /// Where to write.
    [[nodiscard]] const QString &partPath() const { return m_part; }
    /// Why what has the name already cannot be replaced, in the system's words; empty when it can.
    [[nodiscard]] const QString &problem() const { return m_problem; }

    /// Gives the written and closed file its name. Empty when it has it, otherwise the system's reason.
    [[nodiscard]] QString finish();

private:
    QString m_path;
    QString m_target; ///< what the name stands for, links followed
    QString m_part;
    QString m_problem;
    bool m_finished = false;
};
