// SPDX-License-Identifier: MIT
// Writes a source for lupdate, which cannot see that the names of enumerators are translated:
// list_display_names FILE
#include "translations/DisplayNames.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "list_display_names FILE\n";
        return EXIT_FAILURE;
    }
    std::ofstream file(argv[1]);
    for (const auto& name : translations::displayNames())
        file << "QT_TRANSLATE_NOOP(\"" << qPrintable(name.first) << "\", \"" << qPrintable(name.second)
             << "\")\n";
    file.close();
    if (!file) {
        std::cerr << argv[1] << " cannot be written.\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
