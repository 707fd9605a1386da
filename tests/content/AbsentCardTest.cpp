#include "content/AbsentCard.h"

#include <QUrl>
#include <gtest/gtest.h>

#include "imaging/SvgImage.h"

TEST(AbsentCard, ANameIsCutInItsMiddle)
{
    const struct {
        const char* text;
        int width;
        const char* expected;
    } rows[] = {
        {"a.jpg", 5, "a.jpg"},
        {"a.jpg", 20, "a.jpg"},
        {"IMG_20190704_0042.jpg", 21, "IMG_20190704_0042.jpg"},
        {"IMG_20190704_0042.jpg", 12, "IMG_20…2.jpg"},
        {"IMG_20190704_0042.jpg", 11, "IMG_2…2.jpg"},
        {"a.jpg", 2, "a…"},
        {"a.jpg", 1, "…"},
        {"a.jpg", 0, "…"},
        {"a.jpg", -5, "…"},
        {"", 5, ""},
        // Square letters take two places, and a pair of surrogates is not torn.
        {"写真写真.jpg", 12, "写真写真.jpg"},
        {"写真写真.jpg", 10, "写真….jpg"},
        {"🌄🌄🌄🌄🌄", 7, "🌄…🌄"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CutInTheMiddle(QString::fromUtf8(row.text), row.width), QString::fromUtf8(row.expected))
            << row.text << ' ' << row.width;
    }
}

TEST(AbsentCard, IsADrawingOfTheSizeOfItsSlot)
{
    const QString names[] = {QStringLiteral("IMG_0042.jpg"), QStringLiteral("<b>\"a\" & 'b'#%41.jpg"),
                             QString(4000, QLatin1Char('W')), QString()};
    for (const QSize slot : {QSize(400, 300), QSize(120, 90), QSize(64, 64), QSize(20, 500), QSize(1, 1),
                             QSize(0, 0), QSize(-3, 7)}) {
        for (const QString& name : names) {
            const std::string address = MakeAbsentCard(name, slot);
            const std::string scheme = "data:image/svg+xml,";
            ASSERT_EQ(address.substr(0, scheme.size()), scheme);
            // It stands in an attribute.
            EXPECT_EQ(address.find_first_of("\"'<>& #"), std::string::npos);
            const QByteArray drawing =
                QByteArray::fromPercentEncoding(QByteArray::fromStdString(address.substr(scheme.size())));
            EXPECT_EQ(RenderSvg(drawing, 1).GetSize(), slot.expandedTo({1, 1}));
        }
    }
}

TEST(AbsentCard, SaysWhatIsMissing)
{
    const QString card = QUrl::fromPercentEncoding(
        QByteArray::fromStdString(MakeAbsentCard(QStringLiteral("IMG_<1>.jpg"), QSize(400, 300))));
    EXPECT_TRUE(card.contains(QStringLiteral(">IMG_&lt;1&gt;.jpg</text>"))) << qPrintable(card);
    EXPECT_TRUE(card.contains(QStringLiteral(">not there</text>")));
    // Where no letter could be read only the drawing is left.
    EXPECT_FALSE(QUrl::fromPercentEncoding(
                     QByteArray::fromStdString(MakeAbsentCard(QStringLiteral("a.jpg"), QSize(40, 40))))
                     .contains(QStringLiteral("<text")));
}
