#include "document/clusters/PictureClusters.h"

#include "common/Variant.h"
#include "document/clusters/PictureClusterLabel.h"
#include "document/pictures/PictureList.h"

namespace {

// The clusters during one pass, and the one in front that others may be merged into.
class CMergePass {
public:
    CMergePass(PictureClusterMap& map, const CPicturesClusterKeyComparator& comparator, int32_t maxSize)
        : map(map), comparator(comparator), maxSize(maxSize), previous(map.end())
    {}

    // Merges small with small; a large cluster ends a row of them. False if it was cancelled.
    bool SweepSmall(CPictureClustersCanceller& canceller)
    {
        previous = map.end();
        for (auto current = map.begin(); current != map.end();) {
            if (canceller.IsCancelled()) {
                return false;
            }
            if (HasPrevious() && IsSmall(previous) && IsSmall(current) && IsSimilar(current)) {
                current = MergeIntoPrevious(current);
                continue;
            }
            previous = IsSmall(current) ? current : map.end();
            ++current;
        }
        return true;
    }

    // Merges what is small with a neighbour of any size. False if a small cluster is left behind the first.
    bool SweepRest()
    {
        bool result = true;
        previous = map.end();
        for (auto current = map.begin(); current != map.end();) {
            if (HasPrevious() && (IsSmall(previous) || IsSmall(current)) && IsSimilar(current)) {
                current = MergeIntoPrevious(current);
                continue;
            }
            if (IsSmall(current) && current != map.begin()) {
                result = false;
            }
            previous = current++;
        }
        return result;
    }

private:
    using Position = PictureClusterMap::iterator;

    bool HasPrevious() const { return previous != map.end(); }
    bool IsSmall(Position cluster) const { return static_cast<int64_t>(cluster->second.size()) < maxSize; }
    bool IsSimilar(Position current) const { return comparator.AreSimilar(current->first, previous->first); }

    // The cluster behind the merged one. Each picture moves once in a sweep, whatever the sizes.
    Position MergeIntoPrevious(Position current)
    {
        previous->second.merge(current->second);
        return map.erase(current);
    }

    PictureClusterMap& map;
    const CPicturesClusterKeyComparator& comparator;
    const int64_t maxSize;
    Position previous; // the end for none
};

// False if it was cancelled.
bool CollectDays(const CPictureList& pictures, PictureClusterMap& map, CPictureClustersCanceller& canceller)
{
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const QDate day = DayOfDate(pictures.GetAt(position)->GetDate());
        if (day.isValid()) {
            map[day].insert(position);
        }
        if (canceller.IsCancelled()) {
            return false;
        }
    }
    return true;
}

void MergeDays(PictureClusterMap& map, int32_t maxSize, CPictureClustersCanceller& canceller)
{
    if (!MergeClusters(map, CPicturesClusterKeyComparatorMY(), maxSize, canceller) &&
        !MergeClusters(map, CPicturesClusterKeyComparatorY(), maxSize, canceller)) {
        MergeClusters(map, CPicturesClusterKeyComparator(), maxSize, canceller);
    }
}

// Odd on purpose: first and last by position in the list. In a list that isn't in the order of dates a label
// may run backwards, as the pictures do.
QDate FirstDay(const CPictureList& pictures, const std::set<int32_t>& cluster)
{
    return DayOfDate(pictures.GetAt(*cluster.begin())->GetDate());
}

QDate LastDay(const CPictureList& pictures, const std::set<int32_t>& cluster)
{
    return DayOfDate(pictures.GetAt(*cluster.rbegin())->GetDate());
}

QString MakeLabel(const CPictureList& pictures, const PictureClusterMap& map,
                  PictureClusterMap::const_iterator cluster)
{
    const auto behind = std::next(cluster);
    return MakePictureClusterLabel(
        {.first = FirstDay(pictures, cluster->second),
         .last = LastDay(pictures, cluster->second),
         .lastBefore = cluster != map.begin() ? LastDay(pictures, std::prev(cluster)->second) : QDate(),
         .firstBehind = behind != map.end() ? FirstDay(pictures, behind->second) : QDate()});
}

} // namespace

bool MergeClusters(PictureClusterMap& map, const CPicturesClusterKeyComparator& comparator, int32_t maxSize,
                   CPictureClustersCanceller& canceller)
{
    CMergePass pass(map, comparator, maxSize);
    return !pass.SweepSmall(canceller) || pass.SweepRest();
}

void BuildPictureClusters(std::vector<PictureCluster>& clusters, const CPictureList& pictures,
                          int32_t maxSize, CPictureClustersCanceller& canceller)
{
    clusters.clear();
    PictureClusterMap map;
    if (!CollectDays(pictures, map, canceller)) {
        return;
    }
    MergeDays(map, maxSize, canceller);
    for (auto cluster = map.cbegin(); cluster != map.cend(); ++cluster) {
        if (canceller.IsCancelled()) {
            clusters.clear();
            return;
        }
        clusters.emplace_back(MakeLabel(pictures, map, cluster), cluster->second);
    }
}
