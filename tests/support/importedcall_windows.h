#pragma once

#include <QtGlobal>

#include <vector>

/// Puts a function in the place of a call of the system while it lives: in the import tables of all programs
/// and libraries that are loaded when it comes. The function has the call's type. One at a time for each
/// call.
class ImportedCall
{
public:
    /// `original` is the system's own function, which stays callable through it.
    template <typename Function>
    ImportedCall(const char *name, Function *function, Function *&original)
        : ImportedCall(name, reinterpret_cast<void *>(function))
    {
        original = reinterpret_cast<Function *>(m_original);
    }
    ~ImportedCall();
    Q_DISABLE_COPY_MOVE(ImportedCall)

private:
    ImportedCall(const char *name, void *function);
    void replaceIn(char *module, const std::vector<void *> &originals, void *function);

    struct Place
    {
        void **entry;
        void *before;
    };
    void *m_original = nullptr;
    std::vector<Place> m_places;
};
