// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

/// Sources, headers, files of the build and scripts of the project, by their paths from the root. Forms are not among
/// them: Qt Designer drops comments.
inline std::vector<std::string> projectFiles()
{
    namespace fs = std::filesystem;
    static const std::set<std::string> kinds{".cpp", ".h",  ".in", ".qml", ".dox", ".cmake",
                                             ".sh",  ".py", ".R",  ".awk", ".sql"};
    std::vector<std::string> files;
    const fs::path root(SOURCE_ROOT);
    for (auto entry = fs::recursive_directory_iterator(root); entry != fs::recursive_directory_iterator(); ++entry) {
        const std::string name = entry->path().filename().string();
        if (entry->is_directory()) {
            // What is built, and what tools keep for themselves.
            if (name == "build" || name == "__pycache__" || (name[0] == '.' && name != ".ci"))
                entry.disable_recursion_pending();
            continue;
        }
        std::ifstream stream(entry->path());
        std::string line;
        std::getline(stream, line);
        if (kinds.count(entry->path().extension().string()) != 0 || name == "CMakeLists.txt" ||
            line.rfind("#!", 0) == 0)
            files.push_back(fs::relative(entry->path(), root).generic_string());
    }
    return files;
}

inline std::vector<std::string> linesOf(const std::string &file)
{
    std::ifstream stream(SOURCE_ROOT "/" + file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
