#include "tests/matrix/cell.h"

#include "tests/matrix/groups.h"

const std::vector<LogText> &logTexts()
{
    static const std::vector<LogText> texts{
        {TimedOut, "wait_for_read 接收数据超时", "a reply was not whole when its time was over"},
        {ReadFailed, "串口接收数据失败", "a read of a reply failed"},
        {StreamReadFailed, "串口线程接收数据失败", "a read of the stream failed"},
        {Interrupted, "接收数据中断", "nothing has come for 5 s"},
        {Resumed, "接收数据恢复", "something has come again"},
        {StopOverdue, "停止超时，强制停止采集", "a stop in silence: the detector is halted all the same"},
        {Halted, "下位机停止成功", "the detector has confirmed its halt"},
        {Lost, "设备连接丢失", "the device is gone"},
        {DeviceClosed, "串口关闭", "the device was closed"},
        {OpenFailed, "串口连接失败", "the device could not be opened"},
        {Surplus, "接收数据多余", "more has come than belongs to a frame"},
        {FileCut, "文件写入不完整", "a file could not be written whole"},
        {FileNotOpened, "文件打开失败", "a file could not be made"},
        {RecordingEnded, "保存完成：", "a recording has taken all its frames"},
        {RecordingCut, "保存中止：", "a recording has ended before"},
    };
    return texts;
}

std::string Cell::name() const
{
    return std::string(row.name) + " x " + columnOf(fault).name;
}

const std::vector<Group> &allGroups()
{
    static const std::vector<Group> groups{
        connectGroup(),
        disconnectGroup(),
        pullGroup(),
        plugGroup(),
        removeOtherGroup(),
        plugSamplingGroup(),
        batteryGroup(),
        downloadGroup(),
        commandGroup(),
        otherCommandsGroup(),
        readbackGroup(),
        otherReadbacksGroup(),
        patternGroup(),
        readinessGroup(),
        startGroup(),
        streamGroup(),
        calibrationGroup(),
        recordingGroup(),
        refusedDisconnectGroup(),
        stopGroup(),
        leaveGroup(),
        acquireOpenGroup(),
        acquirePatternGroup(),
        acquireReadinessGroup(),
        acquireStartGroup(),
        acquireStreamGroup(),
        acquireStopGroup(),
        acquireDiskGroup(),
    };
    return groups;
}

std::vector<Cell> allCells()
{
    std::vector<Cell> cells;
    for (const Group &group : allGroups()) {
        for (const Row &row : group.rows) {
            for (const Entry &entry : group.entries)
                cells.push_back({row, entry.fault, entry.expected});
        }
    }
    return cells;
}

namespace {

std::vector<Cell> cellsOf(bool isOfTheTool, Pace pace)
{
    constexpr int promptSeconds = 1;
    std::vector<Cell> cells = allCells();
    std::erase_if(cells, [=](const Cell &cell) {
        return (cell.row.act == Act::Acquire) != isOfTheTool ||
               (cell.expected.seconds > promptSeconds) != (pace == Pace::Waiting);
    });
    return cells;
}

} // namespace

std::vector<Cell> windowCells(Pace pace)
{
    return cellsOf(false, pace);
}

std::vector<Cell> toolCells(Pace pace)
{
    return cellsOf(true, pace);
}
