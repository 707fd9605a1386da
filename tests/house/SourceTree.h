#pragma once

#include <map>
#include <set>
#include <vector>

#include <QString>

// The house as its files say it is: the folders of src/ with the lists of what each may include, and all
// include lines. A folder is what one call of add_folder() makes a library of; its sub-folders belong to it.

// As the line stands in a file.
struct IncludeLine {
    QString file;     // relative to src/
    QString folder;   // in which the file lies
    QString included; // with its quotes or brackets
};

struct SourceTree {
    std::map<QString, std::set<QString>> mayInclude; // by folder: "effects", "shell/look"
    std::vector<QString> floors;                     // the folders, lowest first
    std::vector<IncludeLine> lines;                  // by file, in the order of the file

    // The folder in which a path below src/ lies: that of "shell/look/Icons.h" is "shell/look". Empty if
    // there is none.
    QString FolderOf(const QString& path) const;
};

// The text of a file. One that can't be read fails the test.
QString ReadText(const QString& path);

// Reads CMakeLists.txt files and sources below SOURCE_FOLDER/src. A folder that can't be read fails the test.
SourceTree ReadSourceTree();

// The path that a line with quotes names: "\"common/Text.h\"" gives "common/Text.h". Empty for one with
// brackets.
QString QuotedPath(const IncludeLine& line);

// Circles among units, a header and its source being one: each a list of units ("document/Gallery") that
// include each other, alphabetically.
std::vector<std::vector<QString>> FindCircles(const std::vector<IncludeLine>& lines);
