#include "document/files/LostFiles.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include <QStringList>

namespace {

bool IsSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

// The names of a path, the last one first.
QStringList NamesFromTheEnd(const QString& path)
{
    QStringList names;
    qsizetype end = path.size();
    for (qsizetype start = end; start >= 0; --start) {
        if (start > 0 && !IsSeparator(path[start - 1])) {
            continue;
        }
        if (start < end) {
            names += path.mid(start, end - start);
        }
        end = start - 1;
    }
    return names;
}

int CommonEndOf(const QString& a, const QString& b)
{
    const QStringList namesOfA = NamesFromTheEnd(a);
    const QStringList namesOfB = NamesFromTheEnd(b);
    const auto end = std::mismatch(namesOfA.begin(), namesOfA.end(), namesOfB.begin(), namesOfB.end());
    return static_cast<int>(end.first - namesOfA.begin());
}

// Paths as a tree from their last name towards their first, so that the best of thousands of one name is
// found without looking at each.
class CPathEnds {
public:
    void Add(const QString& path)
    {
        int node = 0;
        for (const QString& name : NamesFromTheEnd(path)) {
            const auto [branch, isNew] = branches.try_emplace({node, name}, static_cast<int>(ends.size()));
            if (isNew) {
                ends.push_back({});
            }
            node = branch->second;
            ends[static_cast<size_t>(node)].path = path;
            ++ends[static_cast<size_t>(node)].count;
        }
    }

    struct Best {
        QString path;
        int commonEnd;
    };
    // Nothing if none has the last name, or several are equally good.
    std::optional<Best> Find(const QString& path) const
    {
        int node = 0;
        int length = 0;
        for (const QString& name : NamesFromTheEnd(path)) {
            const auto branch = branches.find({node, name});
            if (branch == branches.end()) {
                break;
            }
            node = branch->second;
            ++length;
        }
        const End& end = ends[static_cast<size_t>(node)];
        return length > 0 && end.count == 1 ? std::optional(Best{end.path, length}) : std::nullopt;
    }

private:
    struct End {
        QString path; // of the last one that was added
        int count = 0;
    };
    std::map<std::pair<int, QString>, int> branches;
    std::vector<End> ends = {{}};
};

bool HasSize(const QString& path, int64_t size)
{
    return size >= 0 && LookAtFile(path).size == size;
}

} // namespace

CLostFiles::CLostFiles(const std::vector<LostFile>& allLost, std::set<QString> taken)
    : taken(std::move(taken))
{
    std::set<QString> known;
    for (const LostFile& file : allLost) {
        if (known.insert(file.path).second) {
            lost.push_back(file);
        }
    }
}

std::vector<FoundFile> CLostFiles::FindByTraces()
{
    std::vector<Claim> claims;
    for (const LostFile& file : lost) {
        const QString path = file.trace.GetPath();
        if (!path.isEmpty() && taken.count(path) == 0 && IsFile(path)) {
            claims.push_back({&file, path, CommonEndOf(file.path, path)});
        }
    }
    return Grant(claims);
}

std::vector<FoundFile> CLostFiles::FindBelow(const QStringList& folders, const CFileIndex::Limits& limits)
{
    std::vector<QString> names;
    for (const LostFile& file : lost) {
        names.push_back(NamesFromTheEnd(file.path).value(0));
    }
    const CFileIndex index(folders, names, limits);
    CPathEnds ends;
    for (const QString& name : std::set<QString>(names.begin(), names.end())) {
        for (const QString& path : index.GetFiles(name)) {
            if (taken.count(path) == 0) {
                ends.Add(path);
            }
        }
    }
    std::vector<Claim> claims;
    for (const LostFile& file : lost) {
        const auto best = ends.Find(file.path);
        const bool needsSize = best && best->commonEnd == 1 && (file.trace.size >= 0 || index.IsCutShort());
        if (best && (!needsSize || HasSize(best->path, file.trace.size))) {
            claims.push_back({&file, best->path, best->commonEnd});
        }
    }
    return Grant(claims);
}

// Of several that claim a file the one with the longest common end gets it; none does if two are equally
// good. What was granted isn't looked for any more.
std::vector<FoundFile> CLostFiles::Grant(const std::vector<Claim>& claims)
{
    std::map<QString, int> longest;
    std::map<QString, int> countOfLongest;
    for (const Claim& claim : claims) {
        int& length = longest[claim.found];
        int& count = countOfLongest[claim.found];
        count = claim.commonEnd > length ? 1 : count + (claim.commonEnd == length ? 1 : 0);
        length = std::max(length, claim.commonEnd);
    }
    std::vector<FoundFile> granted;
    std::set<QString> grantedPaths;
    for (const Claim& claim : claims) {
        if (claim.commonEnd == longest[claim.found] && countOfLongest[claim.found] == 1) {
            granted.push_back({claim.lost->path, claim.found, HasSize(claim.found, claim.lost->trace.size)});
            grantedPaths.insert(claim.lost->path);
            taken.insert(claim.found);
        }
    }
    lost.erase(std::remove_if(lost.begin(), lost.end(),
                              [&](const LostFile& file) { return grantedPaths.count(file.path) != 0; }),
               lost.end());
    return granted;
}
