// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// What each file includes of the project, as it is written; files by their path from the root.
using Includes = std::map<std::string, std::vector<std::string>>;

struct Floor
{
    std::regex files;
    int height;
};

/// A file includes files of its own floor or of a lower one. The first line that matches a path counts; two floors of
/// the same height know nothing of each other.
const std::vector<Floor> &floors()
{
    static const std::vector<Floor> all = [] {
        std::vector<Floor> list;
        const auto add = [&list](const char *files, int height) {
            list.push_back({std::regex(files, std::regex::ECMAScript), height});
        };
        add("engine/kernel/.*", 0);
        add("platform/.*", 0);
        add("engine/Mlr(table|query)\\..*", 3);
        add("engine/.*", 1);
        add("present/.*", 2);
        add("select/.*", 4);
        add("design/.*", 5);
        add("app/.*", 5);
        add("workbench/.*", 6);
        return list;
    }();
    return all;
}

const Floor *floorOf(const std::string &file)
{
    const auto found = std::find_if(floors().begin(), floors().end(),
                                    [&file](const Floor &floor) { return std::regex_match(file, floor.files); });
    return found == floors().end() ? nullptr : &*found;
}

/// Headers that the build makes.
bool isGenerated(const std::string &include)
{
    static const std::regex names("platform/(Export|Version)\\.h|ui_\\w+\\.h|.*\\.moc|moc_\\w+\\.cpp");
    return std::regex_match(include, names);
}

Includes includesBelow(const fs::path &root)
{
    static const std::regex line(R"re(\s*#\s*include\s*(?:"([^"]+)"|<([^">]+)>).*)re");
    Includes all;
    for (const char *folder : {"platform", "engine", "present", "select", "design", "app", "workbench"}) {
        if (!fs::exists(root / folder))
            continue;
        for (const auto &entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp")
                continue;
            std::vector<std::string> &list = all[fs::relative(entry.path(), root).generic_string()];
            std::ifstream stream(entry.path());
            std::smatch match;
            for (std::string text; std::getline(stream, text);) {
                if (!std::regex_match(text, match, line))
                    continue;
                // In angle brackets only a name that is on one of our floors is ours.
                if (match[1].matched || floorOf(match[2]) != nullptr)
                    list.push_back(match[1].matched ? match[1] : match[2]);
            }
        }
    }
    return all;
}

std::vector<std::string> wrongIncludes(const Includes &files)
{
    std::vector<std::string> wrong;
    for (const auto &[file, includes] : files) {
        const Floor *own = floorOf(file);
        for (const std::string &include : includes) {
            if (isGenerated(include))
                continue;
            if (files.count(include) == 0) {
                wrong.push_back(file + " includes " + include + ", which is no path from the project's root");
                continue;
            }
            const Floor *other = floorOf(include);
            if (other != own && other->height >= own->height)
                wrong.push_back(file + " includes " + include + ", which is not below it");
        }
    }
    return wrong;
}

/// The files of a loop in the order of their includes; empty when there is none.
std::vector<std::string> loopFrom(const std::string &file, const Includes &files, std::vector<std::string> &path,
                                  std::set<std::string> &done)
{
    const auto before = std::find(path.begin(), path.end(), file);
    if (before != path.end())
        return {before, path.end()};
    const auto found = files.find(file);
    if (found == files.end() || !done.insert(file).second)
        return {};
    path.push_back(file);
    for (const std::string &include : found->second) {
        if (std::vector<std::string> loop = loopFrom(include, files, path, done); !loop.empty())
            return loop;
    }
    path.pop_back();
    return {};
}

std::vector<std::string> includeLoop(const Includes &files)
{
    std::set<std::string> done;
    for (const auto &entry : files) {
        std::vector<std::string> path;
        if (std::vector<std::string> loop = loopFrom(entry.first, files, path, done); !loop.empty())
            return loop;
    }
    return {};
}

} // namespace

TEST(Layering, EveryFileIncludesOnlyWhatLiesBelowIt)
{
    const Includes files = includesBelow(SOURCE_ROOT);
    ASSERT_GT(files.size(), 5U) << "no sources found below " SOURCE_ROOT;
    for (const std::string &wrong : wrongIncludes(files))
        ADD_FAILURE() << wrong;
}

TEST(Layering, NoFilesIncludeEachOtherInALoop)
{
    std::string loop;
    for (const std::string &file : includeLoop(includesBelow(SOURCE_ROOT)))
        loop += file + " -> ";
    EXPECT_EQ(loop, "");
}

TEST(LayeringCheck, NoticesAFloorThatReachesUp)
{
    EXPECT_EQ(wrongIncludes({{"platform/A.cpp", {"engine/B.h"}}, {"engine/B.h", {}}}).size(), 1U);
    EXPECT_EQ(wrongIncludes({{"engine/A.cpp", {"engine/Mlrtable.h"}}, {"engine/Mlrtable.h", {}}}).size(), 1U);
    EXPECT_EQ(wrongIncludes({{"present/A.h", {"engine/Mlrquery.h"}}, {"engine/Mlrquery.h", {}}}).size(), 1U);
    EXPECT_EQ(wrongIncludes({{"app/A.cpp", {"design/B.h"}}, {"design/B.h", {}}}).size(), 1U);
    EXPECT_EQ(wrongIncludes({{"platform/A.cpp", {"B.h"}}, {"platform/B.h", {}}}).size(), 1U);
}

TEST(LayeringCheck, LetsAFloorReachDown)
{
    EXPECT_TRUE(wrongIncludes({{"engine/Mlrtable.cpp", {"engine/Mlrquery.h", "engine/B.h", "present/C.h"}},
                               {"engine/Mlrquery.h", {"platform/Export.h"}},
                               {"engine/B.h", {}},
                               {"present/C.h", {"engine/B.h"}}})
                    .empty());
}

TEST(LayeringCheck, NoticesALoop)
{
    const Includes loop = {
        {"engine/A.h", {"engine/B.h"}}, {"engine/B.h", {"engine/C.h"}}, {"engine/C.h", {"engine/B.h"}}};
    EXPECT_EQ(includeLoop(loop), std::vector<std::string>({"engine/B.h", "engine/C.h"}));
    EXPECT_TRUE(includeLoop({{"engine/A.h", {"engine/B.h", "engine/C.h"}}, {"engine/B.h", {"engine/C.h"}}}).empty());
}
