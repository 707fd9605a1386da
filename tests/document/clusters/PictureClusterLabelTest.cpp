#include "document/clusters/PictureClusterLabel.h"

#include <gtest/gtest.h>

namespace {

QDate Day(const char* text)
{
    return QDate::fromString(QString::fromLatin1(text), Qt::ISODate);
}

} // namespace

TEST(PictureClusterLabel, IsAsShortAsItsNeighboursAllow)
{
    const struct {
        const char* first;
        const char* last;
        const char* before;
        const char* after;
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
        EXPECT_EQ(MakePictureClusterLabel({Day(row.first), Day(row.last), Day(row.before), Day(row.after)}),
                  QString::fromLatin1(row.expected))
            << row.first << " to " << row.last << " between " << row.before << " and " << row.after;
    }
}
