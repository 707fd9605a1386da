#include "document/clusters/PictureClusters.h"

#include <cmath>
#include <limits>

#include "TestProject.h"
#include "common/Variant.h"
#include "document/clusters/PictureClusterLabel.h"
#include "document/pictures/FilePictureInfo.h"

namespace {

constexpr int Never = 0;

// Answers true to the question of that number, counted from 1, and where it is lasting to all behind it.
class CCountingCanceller final : public CPictureClustersCanceller {
public:
    explicit CCountingCanceller(int cancelAt = Never, bool isLasting = true)
        : cancelAt(cancelAt), isLasting(isLasting)
    {}

    bool IsCancelled() override
    {
        ++asked;
        return cancelAt != Never && (asked == cancelAt || (isLasting && asked > cancelAt));
    }

    int asked = 0;

private:
    const int cancelAt;
    const bool isLasting;
};

DateValue DateOf(const QDate& day)
{
    return DateFromLocalTime(QDateTime(day, QTime(12, 0)));
}

void Add(CPictureList& list, DateValue date, int count = 1)
{
    for (int i = 0; i < count; ++i) {
        auto record = std::make_unique<CFilePictureInfo>(QStringLiteral("%1.jpg").arg(list.GetCount()), 0);
        record->SetDate(date);
        list.Add(std::move(record), false);
    }
}

// "2005-03-01*3 2005-03-02": three pictures of the first day, one of the second.
void AddDays(CPictureList& list, const QString& days)
{
    for (const QString& part : days.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QDate day = QDate::fromString(part.section(QLatin1Char('*'), 0, 0), Qt::ISODate);
        ASSERT_TRUE(day.isValid()) << qPrintable(part);
        Add(list, DateOf(day), std::max(1, part.section(QLatin1Char('*'), 1).toInt()));
    }
}

// "0-2,5".
QString Positions(const std::set<int32_t>& positions)
{
    QStringList ranges;
    for (auto from = positions.begin(); from != positions.end();) {
        auto last = from;
        while (std::next(last) != positions.end() && *std::next(last) == *last + 1) {
            ++last;
        }
        ranges += *from == *last ? QString::number(*from) : QStringLiteral("%1-%2").arg(*from).arg(*last);
        from = std::next(last);
    }
    return ranges.join(QLatin1Char(','));
}

// "LABEL: 0-2 | LABEL: 3".
QString Clusters(const CPictureList& list, int32_t maxSize,
                 CCountingCanceller canceller = CCountingCanceller())
{
    std::vector<PictureCluster> clusters{{QStringLiteral("of an earlier run"), {7}}};
    BuildPictureClusters(clusters, list, maxSize, canceller);
    QStringList texts;
    for (const auto& [label, positions] : clusters) {
        texts += label + QStringLiteral(": ") + Positions(positions);
    }
    return texts.join(QStringLiteral(" | "));
}

QString Clusters(const char* days, int32_t maxSize, CCountingCanceller canceller = CCountingCanceller())
{
    CPictureList list;
    AddDays(list, QString::fromLatin1(days));
    return Clusters(list, maxSize, canceller);
}

struct ClusterRow {
    const char* days;
    int32_t maxSize;
    const char* expected;
};

void ExpectClusters(const std::vector<ClusterRow>& rows)
{
    for (const ClusterRow& row : rows) {
        EXPECT_EQ(Clusters(row.days, row.maxSize), QString::fromLatin1(row.expected))
            << row.days << " by " << row.maxSize;
    }
}

QDate Day(const char* text)
{
    return QDate::fromString(QString::fromLatin1(text), Qt::ISODate);
}

} // namespace

TEST(PictureClusters, KeysAreSimilarByMonthByYearOrAlways)
{
    const struct {
        const char* a;
        const char* b;
        bool inMonth;
        bool inYear;
    } rows[] = {
        {"2005-03-01", "2005-03-31", true, true},   {"2005-03-31", "2005-04-01", false, true},
        {"2004-03-01", "2005-03-01", false, false}, {"1999-12-31", "2000-01-01", false, false},
        {"2005-03-01", "2005-03-01", true, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CPicturesClusterKeyComparatorMY().AreSimilar(Day(row.a), Day(row.b)), row.inMonth) << row.b;
        EXPECT_EQ(CPicturesClusterKeyComparatorY().AreSimilar(Day(row.a), Day(row.b)), row.inYear) << row.b;
        EXPECT_TRUE(CPicturesClusterKeyComparator().AreSimilar(Day(row.a), Day(row.b)));
    }
}

TEST(PictureClusters, SmallDaysOfAMonthBecomeOneCluster)
{
    ExpectClusters({
        {"2005-03-01*3 2005-03-02*3 2005-03-03*3", 10, "March 2005: 0-8"},
        {"2005-03-01*3 2005-03-02*3 2005-03-03*3 2005-04-05*10", 10,
         "March 2005: 0-8 | Tuesday, 5 April 2005: 9-18"},
        {"2005-02-10*10 2005-03-01*4 2005-03-02*4 2005-03-03*4 2005-04-05*10", 10,
         "Thursday, 10 February 2005: 0-9 | March 2005: 10-21 | Tuesday, 5 April 2005: 22-31"},
        // Nine are still too few where there is a cluster of the same year in front of them.
        {"2005-02-10*10 2005-03-01*3 2005-03-02*3 2005-03-03*3 2005-04-05*10", 10,
         "February 2005 - March 2005: 0-18 | Tuesday, 5 April 2005: 19-28"},
        // A cluster that has grown large takes no more of the small ones in the first sweep.
        {"2005-03-01*6 2005-03-02*6 2005-03-03*6 2005-03-04*6", 10,
         "1 Mar 2005 - 2 Mar 2005: 0-11 | 3 Mar 2005 - 4 Mar 2005: 12-23"},
    });
}

TEST(PictureClusters, OneDayIsOneClusterWhateverItsSize)
{
    ExpectClusters({
        {"", 10, ""},
        {"2005-03-01", 10, "Tuesday, 1 March 2005: 0"},
        {"2005-03-01*10", 10, "Tuesday, 1 March 2005: 0-9"},
        {"2005-03-01*250", 10, "Tuesday, 1 March 2005: 0-249"},
        {"2005-03-01*3 2005-03-02 2005-03-01*2", 1,
         "Tuesday, 1 March 2005: 0-2,4-5 | Wednesday, 2 March 2005: 3"},
    });
}

TEST(PictureClusters, LargeNeighboursStayApartAndASmallOneMergesWithAnySize)
{
    ExpectClusters({
        {"2005-03-01*10 2005-03-02*12", 10, "Tuesday, 1 March 2005: 0-9 | Wednesday, 2 March 2005: 10-21"},
        {"2005-03-01*10 2005-03-02*2", 10, "March 2005: 0-11"},
        {"2005-03-01*2 2005-03-02*10", 10, "March 2005: 0-11"},
        {"2005-03-01*10 2005-03-05*2 2005-03-20*10", 10,
         "1 Mar 2005 - 5 Mar 2005: 0-11 | Sunday, 20 March 2005: 12-21"},
        {"2005-03-01*10 2006-01-01", 10, "2005 - 2006: 0-10"},
        // The first cluster may be small; only those behind it lead to wider passes.
        {"2004-01-01 2005-03-01*10", 10, "Thursday, 1 January 2004: 0 | Tuesday, 1 March 2005: 1-10"},
    });
}

TEST(PictureClusters, MonthsThenYearsThenAnythingIsMerged)
{
    ExpectClusters({
        {"2005-01-10*6 2005-02-10*6 2005-07-10*6 2005-08-10*6", 10,
         "January 2005 - February 2005: 0-11 | July 2005 - August 2005: 12-23"},
        {"2004-01-10*6 2004-07-10*6 2005-01-10*6 2005-07-10*6", 10, "2004: 0-11 | 2005: 12-23"},
        {"2001-05-05*2 2003-05-05*2", 10, "2001 - 2003: 0-3"},
        {"2001-05-05*2 2003-05-05*2", std::numeric_limits<int32_t>::max(), "2001 - 2003: 0-3"},
    });
}

TEST(PictureClusters, ALimitOfNothingMergesNothing)
{
    for (const int32_t maxSize : {1, 0, -5, std::numeric_limits<int32_t>::min()}) {
        EXPECT_EQ(Clusters("2005-03-01 2005-03-02", maxSize),
                  QStringLiteral("Tuesday, 1 March 2005: 0 | Wednesday, 2 March 2005: 1"))
            << maxSize;
    }
}

TEST(PictureClusters, OddDatesHaveTheirPlaceOrNone)
{
    CPictureList list;
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double date : {0.0, 0.75, std::nan(""), infinity, -infinity, 1e300, -0.25, -1.0}) {
        Add(list, date);
    }
    EXPECT_EQ(Clusters(list, 1), QStringLiteral("Friday, 29 December 1899: 6-7 | "
                                                "Saturday, 30 December 1899: 0-1"));
    CPictureList none;
    Add(none, std::nan(""), 3);
    EXPECT_EQ(Clusters(none, 10), QString());
}

TEST(PictureClusters, ALabelGoesByThePlacesInTheList)
{
    ExpectClusters({
        {"2005-03-20*10 2005-03-09*5 2005-03-01*5", 10,
         "9 Mar 2005 - 1 Mar 2005: 10-19 | Sunday, 20 March 2005: 0-9"},
        // Its first and its last picture are of one day.
        {"2005-03-09 2005-03-01 2005-03-09", 10, "Wednesday, 9 March 2005: 0-2"},
    });
}

TEST(PictureClusters, AChildGalleryStandsAtItsEarliestPicture)
{
    CTestProject test;
    test.AddStandard();
    CGallery& root = test.NewGallery();
    root.AddPicture(test.MakePicture(QStringLiteral("a.jpg"), QDate(2005, 3, 1)));
    const int32_t child = test.project.AddChildGallery(root.GetIndex());
    CGallery& gallery = *test.project.GetGallery(child);
    gallery.AddPicture(test.MakePicture(QStringLiteral("c.jpg"), QDate(2007, 8, 9)));
    gallery.AddPicture(test.MakePicture(QStringLiteral("b.jpg"), QDate(2006, 5, 4)));
    EXPECT_EQ(Clusters(root.GetPictures(), 1),
              QStringLiteral("Tuesday, 1 March 2005: 0 | Thursday, 4 May 2006: 1"));
}

TEST(PictureClusters, APassTellsWhetherASmallClusterIsLeft)
{
    const struct {
        std::vector<int> sizes; // of clusters a month apart
        bool anyIsSimilar;
        bool expected;
        const char* left;
    } rows[] = {
        {{}, false, true, ""},
        {{1}, false, true, "1"},
        {{1, 5}, false, true, "1 5"},
        {{5, 1}, false, false, "5 1"},
        {{1, 5, 1}, false, false, "1 5 1"},
        {{5, 5, 5}, true, true, "5 5 5"},
        {{5, 1}, true, true, "6"},
        {{1, 5}, true, true, "6"},
        {{1, 1, 1}, true, true, "3"},
        {{3, 3, 3, 3}, true, true, "6 6"},
        {{3, 5, 3}, true, true, "11"}, // a large one parts small ones
        {{5, 1, 1, 5}, true, true, "7 5"},
        {{1, 1, 5, 2}, true, true, "9"},
        {{5, 2, 2, 2, 5}, true, true, "5 6 5"},
    };
    for (const auto& row : rows) {
        PictureClusterMap map;
        QDate day(2005, 1, 1);
        int32_t position = 0;
        for (const int size : row.sizes) {
            for (int i = 0; i < size; ++i) {
                map[day].insert(position++);
            }
            day = day.addMonths(1);
        }
        CCountingCanceller canceller;
        const CPicturesClusterKeyComparator any;
        const CPicturesClusterKeyComparatorMY inMonth;
        const CPicturesClusterKeyComparator& comparator = row.anyIsSimilar ? any : inMonth;
        EXPECT_EQ(MergeClusters(map, comparator, 5, canceller), row.expected) << row.left;
        QStringList left;
        for (const auto& [key, positions] : map) {
            left += QString::number(positions.size());
        }
        EXPECT_EQ(left.join(QLatin1Char(' ')), QString::fromLatin1(row.left));
    }
}

TEST(PictureClusters, ACancelledBuildLeavesNothing)
{
    // Three questions each for the pictures, the one pass that this needs and the labels.
    const char* const days = "2005-03-01 2005-03-02 2005-03-03";
    CPictureList list;
    AddDays(list, QString::fromLatin1(days));
    CCountingCanceller patient;
    std::vector<PictureCluster> clusters;
    BuildPictureClusters(clusters, list, 1, patient);
    EXPECT_EQ(clusters.size(), 3u);
    EXPECT_EQ(patient.asked, 9);
    for (int question = 1; question <= patient.asked; ++question) {
        EXPECT_EQ(Clusters(days, 1, CCountingCanceller(question)), QString()) << question;
    }
}

TEST(PictureClusters, ACancelledPassCountsAsDone)
{
    // Cancelled for one question only, in the pass by months: what it merged until then stays, and no other
    // pass follows.
    const char* const days = "2005-03-01 2005-03-02 2005-03-03";
    EXPECT_EQ(Clusters(days, 10, CCountingCanceller(6, false)),
              QStringLiteral("1 Mar 2005 - 2 Mar 2005: 0-1 | Thursday, 3 March 2005: 2"));
    EXPECT_EQ(Clusters(days, 10, CCountingCanceller(Never)), QStringLiteral("March 2005: 0-2"));
}

TEST(PictureClusterLabel, IsAsShortAsItsNeighboursAllow)
{
    const struct {
        const char* first;
        const char* last;
        const char* before;
        const char* behind;
        const char* expected;
    } rows[] = {
        {"2005-03-01", "2005-03-01", "", "", "Tuesday, 1 March 2005"},
        {"2005-03-01", "2005-03-01", "2005-02-28", "2005-03-02", "Tuesday, 1 March 2005"},
        // Days: the month is shared with a neighbour.
        {"2005-03-02", "2005-03-09", "2005-03-01", "", "2 Mar 2005 - 9 Mar 2005"},
        {"2005-03-02", "2005-03-09", "", "2005-03-10", "2 Mar 2005 - 9 Mar 2005"},
        {"2005-03-02", "2005-05-09", "2005-03-01", "", "2 Mar 2005 - 9 May 2005"},
        {"2005-03-02", "2006-05-09", "", "2006-05-10", "2 Mar 2005 - 9 May 2006"},
        // A month.
        {"2005-03-02", "2005-03-09", "", "", "March 2005"},
        {"2005-03-02", "2005-03-09", "2005-02-01", "2005-04-01", "March 2005"},
        {"2005-12-02", "2005-12-09", "2004-11-01", "2006-01-01", "December 2005"},
        // Months: the year is shared with a neighbour.
        {"2005-03-02", "2005-05-09", "2005-02-01", "", "March 2005 - May 2005"},
        {"2005-03-02", "2005-05-09", "2004-02-01", "2005-06-01", "March 2005 - May 2005"},
        {"2004-11-02", "2005-02-09", "2004-02-01", "2006-06-01", "November 2004 - February 2005"},
        {"2004-11-02", "2005-02-09", "2003-02-01", "2005-06-01", "November 2004 - February 2005"},
        // A year.
        {"2005-03-02", "2005-05-09", "", "", "2005"},
        {"2005-03-02", "2005-05-09", "2004-12-31", "2006-01-01", "2005"},
        {"2005-03-02", "2005-03-09", "2004-03-31", "", "2005"}, // the same month of another year
        {"2005-03-02", "2005-03-09", "", "2006-03-31", "2005"},
        // Years.
        {"2004-11-02", "2005-02-09", "", "", "2004 - 2005"},
        {"2004-11-02", "2005-02-09", "2003-12-31", "2006-01-01", "2004 - 2005"},
        {"2004-03-02", "2005-03-09", "", "", "2004 - 2005"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MakePictureClusterLabel({Day(row.first), Day(row.last), Day(row.before), Day(row.behind)}),
                  QString::fromLatin1(row.expected))
            << row.first << " to " << row.last << " between " << row.before << " and " << row.behind;
    }
}

TEST(PictureClusters, ALabelLooksAtTheNearestDaysOfItsNeighbours)
{
    ExpectClusters({
        {"2004-01-01*10 2005-01-10*5 2005-02-01*10 2005-02-20*5 2005-02-21*5", 10,
         "Thursday, 1 January 2004: 0-9 | 10 Jan 2005 - 1 Feb 2005: 10-24 | "
         "20 Feb 2005 - 21 Feb 2005: 25-34"},
        {"2005-02-01*5 2005-02-02*5 2005-02-20*10 2005-03-10*5", 10,
         "1 Feb 2005 - 2 Feb 2005: 0-9 | 20 Feb 2005 - 10 Mar 2005: 10-24"},
    });
}
