// A driver library under the maker's name and with his interface, and nothing more: no word of a simulation.
// Behind it is the virtual detector.

#include "tests/support/providercalls.h"
#include "tests/support/virtualcalls.h"

d2xx::Functions &providerCalls()
{
    static d2xx::Functions calls = callsOfVirtualDetector(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    return calls;
}
