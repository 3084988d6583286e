#include "tests/support/importedcall_windows.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <qt_windows.h>

#include <psapi.h>

namespace {

/// The libraries that export the system's calls; the second is behind the first, and imported from directly
/// too.
constexpr std::array<const wchar_t *, 2> systemLibraries{L"kernel32.dll", L"kernelbase.dll"};

std::vector<void *> originalsOf(const char *name)
{
    std::vector<void *> found;
    for (const wchar_t *library : systemLibraries) {
        if (const HMODULE module = GetModuleHandleW(library)) {
            if (void *function = reinterpret_cast<void *>(GetProcAddress(module, name)))
                found.push_back(function);
        }
    }
    if (found.empty())
        qFatal("the system has no %s", name);
    return found;
}

std::vector<HMODULE> loadedModules()
{
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    const auto room = static_cast<DWORD>(modules.size() * sizeof(HMODULE));
    if (!K32EnumProcessModules(GetCurrentProcess(), modules.data(), room, &bytes) || bytes > room)
        qFatal("the loaded modules cannot be told");
    modules.resize(bytes / sizeof(HMODULE));
    return modules;
}

/// The libraries that export a call import it from one another: there it stays, so that the original works.
bool isSystemLibrary(HMODULE module)
{
    return std::ranges::any_of(systemLibraries,
                               [&](const wchar_t *name) { return GetModuleHandleW(name) == module; });
}

void store(void **entry, void *function)
{
    DWORD before = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before))
        qFatal("an import table cannot be written");
    *entry = function;
    VirtualProtect(entry, sizeof *entry, before, &before);
}

} // namespace

ImportedCall::ImportedCall(const char *name, void *function)
{
    const std::vector<void *> originals = originalsOf(name);
    m_original = originals.front();
    for (const HMODULE module : loadedModules()) {
        if (!isSystemLibrary(module))
            replaceIn(reinterpret_cast<char *>(module), originals, function);
    }
    if (m_places.empty())
        qFatal("nobody imports %s", name);
}

ImportedCall::~ImportedCall()
{
    for (const Place &place : m_places)
        store(place.entry, place.before);
}

void ImportedCall::replaceIn(char *module, const std::vector<void *> &originals, void *function)
{
    const auto *dos = reinterpret_cast<const IMAGE_DOS_HEADER *>(module);
    const auto *headers = reinterpret_cast<const IMAGE_NT_HEADERS *>(module + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY &directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0)
        return;
    const auto *library =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR *>(module + directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        for (auto *entry = reinterpret_cast<void **>(module + library->FirstThunk); *entry != nullptr;
             ++entry) {
            if (std::ranges::find(originals, *entry) == originals.end())
                continue;
            m_places.push_back({entry, *entry});
            store(entry, function);
        }
    }
}
