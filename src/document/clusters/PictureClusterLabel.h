#pragma once

#include <QDate>
#include <QString>

// The days that decide a cluster's label. A neighbour that isn't there is an invalid date.
struct PictureClusterDays {
    QDate first;
    QDate last;
    QDate lastBefore; // the last day of the cluster in front
    QDate firstAfter;
};

// As short as it can be without being mistaken for a neighbour: a day, a span of days, a month, a span of
// months, a year, or a span of years, in the words of the system's locale.
QString MakePictureClusterLabel(const PictureClusterDays& days);
