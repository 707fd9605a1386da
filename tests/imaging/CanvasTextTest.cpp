#include <QRect>

#include "SampleFiles.h"
#include "imaging/Canvas.h"

// Without a picture of any font: sizes, places and colours of what changes.

namespace {

constexpr CanvasColour grey{128, 128, 128, 255};
constexpr CanvasColour blue{0, 0, 255, 255};

CanvasText SampleText(const QString& text, int32_t points = 12)
{
    return {.text = text, .family = QStringLiteral("sans-serif"), .points = points};
}

CCanvas GreyCanvas(QSize size = QSize(400, 200))
{
    CCanvas canvas(size);
    canvas.FillRectangle(canvas.GetArea(), grey);
    return canvas;
}

// Around all pixels that are no longer grey.
QRect Changed(const CCanvas& canvas)
{
    QRect changed;
    for (int y = 0; y < canvas.GetSize().height(); ++y) {
        for (int x = 0; x < canvas.GetSize().width(); ++x) {
            if (canvas.GetPixel({x, y}) != grey) {
                changed |= QRect(x, y, 1, 1);
            }
        }
    }
    return changed;
}

int CountOf(const CCanvas& canvas, const CanvasColour& colour)
{
    int count = 0;
    for (int y = 0; y < canvas.GetSize().height(); ++y) {
        for (int x = 0; x < canvas.GetSize().width(); ++x) {
            count += canvas.GetPixel({x, y}) == colour ? 1 : 0;
        }
    }
    return count;
}

QRect Drawn(const CanvasText& text, const QRect& box = QRect(0, 0, 400, 200))
{
    CCanvas canvas = GreyCanvas();
    canvas.DrawText(text, box, blue);
    return Changed(canvas);
}

} // namespace

TEST(CanvasText, IsDrawnInsideTheSizeThatWasMeasured)
{
    for (const char* words : {"Hamburg", "© 2026 Anna Österlund", "one\ntwo lines", "fjord fjord"}) {
        const CanvasText text = SampleText(QString::fromUtf8(words), 16);
        CCanvas canvas = GreyCanvas();
        const QSize size = canvas.MeasureText(text);
        ASSERT_GT(size.width(), 40);
        const QRect box(30, 40, size.width() + 1, size.height() + 1);
        canvas.DrawText(text, box, blue);
        const QRect changed = Changed(canvas);
        EXPECT_TRUE(box.adjusted(-3, -1, 3, 1).contains(changed)) << words;
        EXPECT_GT(changed.width(), size.width() * 8 / 10) << words;
        EXPECT_GT(changed.height(), size.height() * 4 / 10) << words;
    }
}

TEST(CanvasText, HasTheColourAndSoftEdges)
{
    CCanvas canvas = GreyCanvas();
    canvas.DrawText(SampleText(QStringLiteral("MOOSE"), 40), canvas.GetArea(), blue);
    EXPECT_GT(CountOf(canvas, blue), 500);
    const int edge = 400 * 200 - CountOf(canvas, blue) - CountOf(canvas, grey);
    EXPECT_GT(edge, 100);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 400; ++x) {
            const CanvasColour pixel = *canvas.GetPixel({x, y});
            // On the way from grey to blue, without colour fringes.
            EXPECT_EQ(pixel.red, pixel.green);
            EXPECT_NEAR(pixel.blue, 255 - pixel.red * 127 / 128, 2);
        }
    }
}

TEST(CanvasText, IsCentredLineByLine)
{
    const QRect wide = Drawn(SampleText(QStringLiteral("wwwwwwwwww"), 12), {100, 10, 200, 100});
    const QRect narrow = Drawn(SampleText(QStringLiteral("w"), 12), {100, 10, 200, 100});
    EXPECT_NEAR(wide.center().x(), 199.5, 2);
    EXPECT_NEAR(narrow.center().x(), 199.5, 2);
    const QRect both = Drawn(SampleText(QStringLiteral("wwwwwwwwww\nw"), 12), {100, 10, 200, 100});
    EXPECT_EQ(both.width(), wide.width());
    EXPECT_GT(both.height(), narrow.height() * 2);
}

TEST(CanvasText, IsSixteenPixelsHighAtTwelvePoints)
{
    // 96 dots per inch: a line is as high as ascent and descent, a little more than the size.
    const CCanvas canvas({1000, 10});
    const int twelve = canvas.MeasureText(SampleText(QStringLiteral("x"), 12)).height();
    EXPECT_GE(twelve, 16);
    EXPECT_LE(twelve, 22);
    const QSize small = canvas.MeasureText(SampleText(QStringLiteral("proportional"), 10));
    const QSize large = canvas.MeasureText(SampleText(QStringLiteral("proportional"), 40));
    // Letters stand on whole pixels.
    EXPECT_NEAR(large.width(), small.width() * 4, small.width() / 5);
    EXPECT_NEAR(large.height(), small.height() * 4, 5);
}

TEST(CanvasText, WrapsAtTheWidthOfTheCanvas)
{
    const CanvasText text = SampleText(QStringLiteral("seven words that will not fit here"));
    const QSize oneLine = CCanvas({1000, 10}).MeasureText(text);
    const QSize wrapped = CCanvas({oneLine.width() / 2, 10}).MeasureText(text);
    EXPECT_LE(wrapped.width(), oneLine.width() / 2);
    EXPECT_GE(wrapped.height(), oneLine.height() * 2);
    // Drawn in the box that was measured it takes the same lines.
    const QRect box(10, 10, wrapped.width() + 1, wrapped.height() + 1);
    EXPECT_TRUE(box.adjusted(-2, -1, 2, 1).contains(Drawn(text, box)));
    // A word that is too long is broken.
    const QSize word = CCanvas({50, 10}).MeasureText(SampleText(QString(40, QLatin1Char('m'))));
    EXPECT_LE(word.width(), 50);
    EXPECT_GE(word.height(), oneLine.height() * 5);
}

TEST(CanvasText, AFontThatDoesNotExistGivesWayToSansSerif)
{
    const CCanvas canvas({1000, 10});
    const QString words = QStringLiteral("The quick brown fox");
    const QSize expected = canvas.MeasureText(SampleText(words));
    for (const char* family : {"No Such Font 4711", "", ",", "MS\nSans", "ÄÖÜ\xf0\x9f\x98\x80"}) {
        CanvasText text = SampleText(words);
        text.family = QString::fromUtf8(family);
        EXPECT_EQ(canvas.MeasureText(text), expected) << family;
    }
    CanvasText monospaced = SampleText(words);
    monospaced.family = QStringLiteral("monospace");
    EXPECT_NE(canvas.MeasureText(monospaced), expected);
}

TEST(CanvasText, StylesShow)
{
    const CanvasText plain = SampleText(QStringLiteral("Illinois"), 30);
    CanvasText bold = plain;
    bold.bold = true;
    CanvasText italic = plain;
    italic.italic = true;
    CanvasText underlined = plain;
    underlined.underline = true;
    CanvasText struckOut = plain;
    struckOut.strikeout = true;
    const auto pixels = [](const CanvasText& text) {
        CCanvas canvas = GreyCanvas();
        canvas.DrawText(text, canvas.GetArea(), blue);
        return canvas.GetSize().width() * canvas.GetSize().height() - CountOf(canvas, grey);
    };
    EXPECT_GT(pixels(bold), pixels(plain) * 12 / 10);
    EXPECT_NE(Drawn(italic), Drawn(plain));
    EXPECT_GT(Drawn(underlined).bottom(), Drawn(plain).bottom());
    EXPECT_GT(pixels(struckOut), pixels(plain) + 100);
    EXPECT_EQ(Drawn(struckOut).height(), Drawn(plain).height());
}

TEST(CanvasText, WithoutASizeThereIsNoText)
{
    for (const int32_t points : {0, -1, std::numeric_limits<int32_t>::min()}) {
        EXPECT_EQ(CCanvas({100, 100}).MeasureText(SampleText(QStringLiteral("x"), points)), QSize(0, 0));
        EXPECT_TRUE(Drawn(SampleText(QStringLiteral("x"), points)).isEmpty());
    }
}

TEST(CanvasText, AnySizeAndAnyBoxIsBorne)
{
    EXPECT_FALSE(Drawn(SampleText(QStringLiteral("-"), 5000), {0, -4350, 400, 5000}).isEmpty());
    EXPECT_FALSE(CCanvas({9, 9}).MeasureText(SampleText(QStringLiteral("M"), 2147483647)).isEmpty());
    Drawn(SampleText(QStringLiteral("M"), 2147483647));
    EXPECT_TRUE(Drawn(SampleText(QStringLiteral("M")), {0, 0, 0, 0}).isEmpty());
    EXPECT_TRUE(Drawn(SampleText(QStringLiteral("M")), {1'000'000'000, 0, 20, 20}).isEmpty());
    EXPECT_TRUE(Drawn(SampleText(QStringLiteral("M")), {0, -1'000'000'000, 20, 20}).isEmpty());
    EXPECT_FALSE(Drawn(SampleText(QStringLiteral("MM")), {0, 0, 1, 1}).isEmpty());
}

TEST(CanvasText, OfManyCharactersIsBorneAndReachesBeyondTheCanvas)
{
    QString words;
    while (words.size() < 10000) {
        words += QStringLiteral("word%1 ").arg(words.size());
    }
    CCanvas canvas = GreyCanvas();
    const QSize size = canvas.MeasureText(SampleText(words));
    EXPECT_LE(size.width(), 400);
    EXPECT_GT(size.height(), 2000);
    canvas.DrawText(SampleText(words), QRect(0, -1000, 400, size.height() + 1), blue);
    EXPECT_GT(Changed(canvas).height(), 180);
    EXPECT_GT(canvas.MeasureText(SampleText(QString(10000, QLatin1Char('\n')))).height(), 100000);
}

TEST(CanvasText, OfAllScriptsAndOddCharactersIsBorneInSilence)
{
    testing::internal::CaptureStderr();
    const QString texts[] = {
        QStringLiteral("\u0645\u0631\u062d\u0628\u0627 2026"),  // Arabic with digits
        QStringLiteral("\u05e9\u05dc\u05d5\u05dd \u00a9 abc"),  // Hebrew with Latin
        QStringLiteral("\u6771\u4eac\u30bf\u30ef\u30fc"),       // Japanese
        QStringLiteral("\U0001F600\U0001F468\u200D\U0001F469"), // emoji, joined
        QStringLiteral("e\u0301a\u0308\u0323"),                 // combining marks
        QStringLiteral("one\r\ntwo\rthree\nfour\u2029five"),    // line breaks
        QStringLiteral("\t\u00ad\u200b\ufeff\u202e reversed"),  // invisible ones
        QString(QChar(0xd800)) + QStringLiteral("lone") + QChar(0xdc00),
        QStringLiteral("nul") + QChar(0) + QStringLiteral("inside"),
        QStringLiteral("<b>100 %s</b> &amp; \\n"),
    };
    for (const QString& text : texts) {
        EXPECT_FALSE(Drawn(SampleText(text)).isEmpty()) << qPrintable(text);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(CanvasText, LineBreaksMakeLines)
{
    const CCanvas canvas({1000, 10});
    const int line = canvas.MeasureText(SampleText(QStringLiteral("a"))).height();
    for (const char* text : {"a\nb\nc", "a\r\nb\r\nc", "a\n\nc"}) {
        EXPECT_NEAR(canvas.MeasureText(SampleText(QString::fromUtf8(text))).height(), line * 3, 2) << text;
    }
}

TEST(CanvasText, IsOpaqueOnATransparentCanvas)
{
    CCanvas canvas({100, 60});
    canvas.DrawText(SampleText(QStringLiteral("MMM"), 30), canvas.GetArea(), {1, 2, 3, 77});
    EXPECT_GT(CountOf(canvas, CanvasColour{1, 2, 3, 255}), 100);
    EXPECT_EQ(canvas.GetPixel({0, 0}), (CanvasColour{255, 255, 255, 0}));
}
