#include "document/clusters/PicturesClusterKeyComparator.h"

bool CPicturesClusterKeyComparator::AreSimilar(const QDate&, const QDate&) const
{
    return true;
}

bool CPicturesClusterKeyComparatorMY::AreSimilar(const QDate& keyA, const QDate& keyB) const
{
    return keyA.year() == keyB.year() && keyA.month() == keyB.month();
}

bool CPicturesClusterKeyComparatorY::AreSimilar(const QDate& keyA, const QDate& keyB) const
{
    return keyA.year() == keyB.year();
}
