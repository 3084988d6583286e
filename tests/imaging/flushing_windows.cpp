#include "tests/imaging/flushing.h"

#include "tests/support/filehandle_windows.h"
#include "tests/support/importedcall_windows.h"

namespace {

decltype(FlushFileBuffers) *systemsFlush = nullptr;

BOOL WINAPI flush(HANDLE file)
{
    if (bringToDisk(pathOf(file)))
        return TRUE;
    SetLastError(ERROR_IO_DEVICE);
    return FALSE;
}

} // namespace

struct FlushingReplaced::Means
{
    ImportedCall flushing{"FlushFileBuffers", &flush, systemsFlush};
};

FlushingReplaced::FlushingReplaced() : m_means(std::make_unique<Means>()) {}

FlushingReplaced::~FlushingReplaced() = default;
