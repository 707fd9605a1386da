#pragma once

#include <QDate>

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
