#pragma once

/// To be called first in every program's main(): from then on the system looks for libraries in the program's
/// folder and in its own only, never in the working folder or in those of the PATH, where others may have put
/// one of the same name. On Windows; other systems do so anyway.
void restrictLibrarySearch();
