#include <QProcess>

#include "ActsFixture.h"

// What a person sees of a selection, of a table of texts and of a deletion, in both colour schemes.

namespace {

class LookOfActs : public CActs, public testing::WithParamInterface<const char*> {
protected:
    LookOfActs()
    {
        program.WriteSettings(QByteArray("ColourScheme=") + GetParam() + '\n');
        StartInMountains();
    }

    // The mean of the grey values, 0 to 255, of a picture that is kept for people to look at.
    int GreyOf(const char* name, const QString& window = QString())
    {
        const QString file = QStringLiteral("acts-%1-%2").arg(QLatin1String(name), QLatin1String(GetParam()));
        program.TakePicture(file, window);
        QProcess convert;
        convert.start(QStringLiteral("convert"),
                      {QStringLiteral(SCREENSHOT_FOLDER "/%1.png").arg(file), QStringLiteral("-colorspace"),
                       QStringLiteral("Gray"), QStringLiteral("-format"),
                       QStringLiteral("%[fx:round(255*mean)]"), QStringLiteral("info:")});
        EXPECT_TRUE(convert.waitForFinished());
        return convert.readAllStandardOutput().toInt();
    }
    bool IsDark() const { return QByteArray(GetParam()) == "dark"; }
};

} // namespace

TEST_P(LookOfActs, FitsTheColourScheme)
{
    Select({"Alpenglow", "Blue Ridges"});
    GreyOf("selection");
    const qsizetype windows = program.CountWindows();
    program.RightClick(program.PlaceOf(PictureOnPage("Alpenglow")));
    ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() > windows; }));
    GreyOf("menu");
    Await([&] { Keys("d"); });
    ASSERT_TRUE(program.WaitForPictures());
    GreyOf("notice");
    Menu("g t");
    const QString table = QStringLiteral("Titles and descriptions");
    ASSERT_TRUE(program.WaitForWindow(table));
    program.FocusWindow(table);
    const int grey = GreyOf("table", table);
    EXPECT_TRUE(IsDark() ? grey < 100 : grey > 180) << grey;
    Keys("Escape");
    WaitUntilGone("Titles and descriptions");
    EXPECT_EQ(program.Terminate(), 0);
}

INSTANTIATE_TEST_SUITE_P(Schemes, LookOfActs, testing::Values("light", "dark"));
