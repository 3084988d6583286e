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
        {FileFailed, "写入失败", "a file could not be written"},
    };
    return texts;
}

std::string Cell::name() const
{
    return std::string(row.name) + " x " + columnOf(fault).name;
}

const std::vector<Group> &allGroups()
{
    static const std::vector<Group> groups{downloadGroup(), commandGroup()};
    return groups;
}

std::vector<Cell> allCells()
{
    std::vector<Cell> cells;
    for (const Group &group : allGroups()) {
        for (const Row &row : group.rows) {
            for (const Entry &entry : group.entries) {
                if (entry.whyNot.empty())
                    cells.push_back({row, entry.fault, entry.expected});
            }
        }
    }
    return cells;
}
