#include <algorithm>
#include <array>

#include <QCryptographicHash>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Site.h"
#include "imaging/Image.h"
#include "support/GoldenFile.h"
#include "support/QtPrinters.h"

// The site of the sample project, which another test has deployed.

namespace {

CSite Site()
{
    return CSite(QStringLiteral(SITE_FOLDER));
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

// Size and mean colours, from 0 to 255, of 4 by 4 pieces of a picture: "800x600 51 102 153 ...".
QString Thumbprint(const QString& path)
{
    constexpr int pieces = 4;
    const CImage image = CImage::FromFile(path);
    const QSize size = image.GetSize();
    const QByteArray pixels = image.GetRgba();
    std::array<int64_t, pieces * pieces * 3> sums{};
    std::array<int64_t, pieces * pieces> counts{};
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int piece = y * pieces / size.height() * pieces + x * pieces / size.width();
            ++counts[static_cast<size_t>(piece)];
            for (int c = 0; c < 3; ++c) {
                sums[static_cast<size_t>(piece * 3 + c)] +=
                    static_cast<uint8_t>(pixels[(qsizetype(y) * size.width() + x) * 4 + c]);
            }
        }
    }
    QString text = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    for (size_t i = 0; i < sums.size(); ++i) {
        text += QLatin1Char(' ') + QString::number((sums[i] + counts[i / 3] / 2) / counts[i / 3]);
    }
    return text;
}

// The names of composed covers hold sums over the paths of their pictures, which each checkout has for
// itself.
QByteArray WithoutPaths(const QByteArray& text)
{
    static const QRegularExpression sums(QStringLiteral("(vsm\\d+)g\\w+?f_"));
    return QString::fromUtf8(text).replace(sums, QStringLiteral("\\1_")).toUtf8();
}

// One line for each file: what it holds.
QStringList Described(const CSite& site)
{
    QStringList lines;
    for (const QString& file : site.GetFiles()) {
        const QString path = QStringLiteral(SITE_FOLDER "/") + file;
        const bool isPicture = file.endsWith(QStringLiteral(".jpg")) || file.endsWith(QStringLiteral(".png"));
        lines += QString::fromUtf8(WithoutPaths(file.toUtf8())) + QStringLiteral(": ") +
                 (isPicture ? Thumbprint(path)
                            : QString::fromLatin1(QCryptographicHash::hash(WithoutPaths(ReadFile(path)),
                                                                           QCryptographicHash::Sha256)
                                                      .toHex()));
    }
    lines.sort();
    return lines;
}

// Numbers may differ by one: processors differ in the last place of a sine.
bool AreAlike(const QString& line, const QString& other)
{
    const QStringList words = line.split(QLatin1Char(' '));
    const QStringList others = other.split(QLatin1Char(' '));
    if (words.size() != others.size()) {
        return false;
    }
    for (qsizetype i = 0; i < words.size(); ++i) {
        bool isNumber = false;
        const int difference = words[i].toInt(&isNumber) - others[i].toInt();
        if (words[i] != others[i] && (!isNumber || std::abs(difference) > 1)) {
            return false;
        }
    }
    return true;
}

// Lines that are alike stay as they were.
QByteArray Renewed(QStringList actual, const QStringList& golden)
{
    for (QString& line : actual) {
        const auto old = std::find_if(golden.begin(), golden.end(),
                                      [&line](const QString& other) { return AreAlike(line, other); });
        line = old == golden.end() ? line : *old;
    }
    return actual.join(QLatin1Char('\n')).toUtf8() + '\n';
}

} // namespace

// Whatever is made faster or tidier, the published files stay as they are.
TEST(SampleSite, IsAsTheGoldenFileTells)
{
    const QStringList actual = Described(Site());
    const QStringList golden =
        QString::fromUtf8(ReadFile(QStringLiteral(GOLDEN_FILE))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (RenewsGoldenFiles()) {
        RenewGoldenFile(QStringLiteral(GOLDEN_FILE), Renewed(actual, golden));
        GTEST_SKIP() << GoldenFilesAreRenewed;
    }
    ASSERT_EQ(actual.size(), golden.size());
    for (qsizetype i = 0; i < golden.size(); ++i) {
        EXPECT_TRUE(AreAlike(actual[i], golden[i])) << qPrintable(actual[i]) << '\n' << qPrintable(golden[i]);
    }
}

TEST(SampleSite, HasAPageForEachPicture)
{
    EXPECT_GT(Site().GetPages().filter(QStringLiteral("picture")).size(), 24);
}

TEST(SampleSite, HasNoBrokenLinkAndNoMissingPicture)
{
    EXPECT_EQ(Site().FindBrokenLinks().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, LoadsNothingFromOtherSites)
{
    EXPECT_EQ(Site().FindForeignResources().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, EveryPageIsReachedFromTheFirst)
{
    EXPECT_EQ(Site().FindUnreachablePages().join(QLatin1Char('\n')), QString());
}

TEST(SampleSite, EveryPictureDecodes)
{
    const QStringList files = Site().GetFiles().filter(QStringLiteral("pictures/"));
    EXPECT_GT(files.size(), 48);
    for (const QString& file : files) {
        const CImage image = CImage::FromFile(QStringLiteral(SITE_FOLDER "/") + file);
        EXPECT_FALSE(image.GetRgba().isEmpty()) << qPrintable(file);
        EXPECT_EQ(image.GetCondition().state, ImageCondition::State::Whole) << qPrintable(file);
    }
}
