#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include <QDate>
#include <QString>

class CPictureList;

// The label for people, and positions in the list of pictures.
using PictureCluster = std::pair<QString, std::set<int32_t>>;

// Clusters in the making, by their first day.
using PictureClusterMap = std::map<QDate, std::set<int32_t>>;

// Asked again and again while clusters are built, on the thread that builds them.
class CPictureClustersCanceller {
public:
    virtual ~CPictureClustersCanceller() = default;
    // True to stop.
    virtual bool IsCancelled() = 0;
};

// Says which clusters of pictures may become one, by the day that each is kept under. This one: any two.
// Without state, so any thread may use it.
class CPicturesClusterKeyComparator {
public:
    virtual ~CPicturesClusterKeyComparator() = default;
    virtual bool AreSimilar(const QDate& keyA, const QDate& keyB) const;
};

// Those of one month.
class CPicturesClusterKeyComparatorMY final : public CPicturesClusterKeyComparator {
public:
    bool AreSimilar(const QDate& keyA, const QDate& keyB) const override;
};

// Those of one year.
class CPicturesClusterKeyComparatorY final : public CPicturesClusterKeyComparator {
public:
    bool AreSimilar(const QDate& keyA, const QDate& keyB) const override;
};

// Groups pictures by date: by day, and where the days are small by month, by year, or across years. Replaces
// what is in clusters; in the order of dates, each picture in one of them, child galleries by their earliest
// picture. A picture without a date belongs to 30 December 1899, one with a date that no calendar has to no
// cluster. Two neighbours of maxSize pictures or more are never merged; a cluster can become larger than
// that, though, and one day is never split. Empty when it was cancelled. The list is borrowed for the call;
// takes a time that grows hardly faster than its length.
void BuildPictureClusters(std::vector<PictureCluster>& clusters, const CPictureList& pictures,
                          int32_t maxSize, CPictureClustersCanceller& canceller);

// One pass: merges small clusters with the one in front of it where the comparator agrees. True if no small
// cluster is left after the first one, and when it was cancelled.
bool MergeClusters(PictureClusterMap& map, const CPicturesClusterKeyComparator& comparator, int32_t maxSize,
                   CPictureClustersCanceller& canceller);
