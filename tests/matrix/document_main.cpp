#include "tests/matrix/document.h"

#include <fstream>
#include <iostream>

/// Writes the document into a file, or to the standard output when none is named.
int main(int argc, char **argv)
{
    if (argc < 2) {
        std::cout << reliabilityDocument();
        return 0;
    }
    std::ofstream file(argv[1], std::ios::binary);
    file << reliabilityDocument();
    file.close();
    return file ? 0 : 1;
}
