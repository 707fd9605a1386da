#include "SourceTree.h"

#include <algorithm>
#include <functional>

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

const QString Root = QStringLiteral(SOURCE_FOLDER "/src/");

// add_subdirectory lines give the order, add_folder calls the lists.
void ReadLists(const QString& folder, SourceTree& tree)
{
    static const QRegularExpression command(
        QStringLiteral(R"((add_subdirectory|add_folder)\(([^)\s]+)([^)]*)\))"));
    static const QRegularExpression list(
        QStringLiteral(R"(\bMAY_INCLUDE\s+([^)]*?)\s+(PUBLIC_LINKS|LINKS|SOURCES)\b)"));
    auto commands = command.globalMatch(ReadText(Root + folder + QStringLiteral("/CMakeLists.txt")));
    while (commands.hasNext()) {
        const auto match = commands.next();
        if (match.captured(1) == QStringLiteral("add_subdirectory")) {
            ReadLists(folder.isEmpty() ? match.captured(2) : folder + QLatin1Char('/') + match.captured(2),
                      tree);
            continue;
        }
        const QString name = match.captured(2);
        EXPECT_EQ(name, folder) << "a folder's library has the folder's path";
        tree.floors.push_back(name);
        const QStringList entries = list.match(match.captured(3))
                                        .captured(1)
                                        .simplified()
                                        .split(QLatin1Char(' '), Qt::SkipEmptyParts);
        tree.mayInclude[name] = {entries.begin(), entries.end()};
    }
}

void ReadLines(SourceTree& tree)
{
    static const QRegularExpression pattern(QStringLiteral(R"(^\s*#\s*include\s*([<"][^>"]+[>"]))"),
                                            QRegularExpression::MultilineOption);
    for (const QString& file : FilesBelow(Root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")})) {
        auto matches = pattern.globalMatch(ReadText(Root + file));
        while (matches.hasNext()) {
            tree.lines.push_back({file, tree.FolderOf(file), matches.next().captured(1)});
        }
    }
}

QString UnitOf(const QString& path)
{
    return path.left(path.lastIndexOf(QLatin1Char('.')));
}

// Tarjan's strongly connected components.
class CCircleFinder {
public:
    explicit CCircleFinder(const std::map<QString, std::set<QString>>& arrows) : arrows(arrows) {}

    std::vector<std::vector<QString>> Find()
    {
        for (const auto& [unit, targets] : arrows) {
            if (!order.contains(unit)) {
                Visit(unit);
            }
        }
        return circles;
    }

private:
    void Visit(const QString& unit)
    {
        const size_t own = order.size();
        order[unit] = own;
        lowest[unit] = own;
        path.push_back(unit);
        for (const QString& target : arrows.at(unit)) {
            if (!arrows.contains(target)) {
                continue;
            }
            if (!order.contains(target)) {
                Visit(target);
                lowest[unit] = std::min(lowest[unit], lowest[target]);
            } else if (std::find(path.begin(), path.end(), target) != path.end()) {
                lowest[unit] = std::min(lowest[unit], order[target]);
            }
        }
        if (lowest[unit] == own) {
            Take(unit);
        }
    }

    void Take(const QString& first)
    {
        const auto begin = std::find(path.begin(), path.end(), first);
        std::vector<QString> circle(begin, path.end());
        path.erase(begin, path.end());
        if (circle.size() > 1) {
            std::sort(circle.begin(), circle.end());
            circles.push_back(std::move(circle));
        }
    }

    const std::map<QString, std::set<QString>>& arrows;
    std::map<QString, size_t> order;
    std::map<QString, size_t> lowest;
    std::vector<QString> path;
    std::vector<std::vector<QString>> circles;
};

} // namespace

QString SourceTree::FolderOf(const QString& path) const
{
    QString longest;
    for (const QString& folder : floors) {
        if (path.startsWith(folder + QLatin1Char('/')) && folder.size() > longest.size()) {
            longest = folder;
        }
    }
    return longest;
}

QString ReadText(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

SourceTree ReadSourceTree()
{
    SourceTree tree;
    ReadLists(QString(), tree);
    ReadLines(tree);
    return tree;
}

QString QuotedPath(const IncludeLine& line)
{
    return line.included.startsWith(QLatin1Char('"')) ? line.included.mid(1, line.included.size() - 2)
                                                      : QString();
}

std::vector<std::vector<QString>> FindCircles(const std::vector<IncludeLine>& lines)
{
    std::map<QString, std::set<QString>> arrows;
    for (const IncludeLine& line : lines) {
        const QString from = UnitOf(line.file);
        const QString to = UnitOf(QuotedPath(line));
        arrows[from];
        if (!to.isEmpty() && to != from) {
            arrows[from].insert(to);
        }
    }
    return CCircleFinder(arrows).Find();
}
