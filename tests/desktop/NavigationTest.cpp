#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"

// The way through pages and galleries by the links of the page.

namespace {

QString Heading(const char* text)
{
    return QStringLiteral("(document.querySelector('h1') || {}).innerText == '%1'")
        .arg(QString::fromUtf8(text));
}

QString Link(const char* text)
{
    return QStringLiteral("[...document.querySelectorAll('a')].find(a => a.innerText.trim() == '%1' || "
                          "(a.querySelector('img[alt=\"%1\"]') != null))")
        .arg(QString::fromUtf8(text));
}

} // namespace

TEST(Navigation, LinksLeadIntoGalleriesAndBack)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    ASSERT_TRUE(program.WaitInPage(Heading("Wide Open")));
    program.ClickElement(Link("Mountains"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!!document.querySelector('nav.path')")));
    // The toolbar's title and the window's stay those of the project.
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
    program.ClickElement(QStringLiteral("document.querySelector('nav.path a')"));
    ASSERT_TRUE(program.WaitInPage(Heading("Wide Open")));
    program.ClickElement(Link("By the Water"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!!document.querySelector('nav.path')")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_NE(SavedProject(project).currentGallery, 0);
}

TEST(Navigation, LinksLeadThroughThePagesOfAGallery)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    ASSERT_TRUE(program.WaitInPage(Heading("Wide Open")));
    // To the page of one picture, and back.
    program.ClickElement(QStringLiteral("document.querySelector('figure:not(.album) a')"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!document.querySelector('h1') || "
                                                  "document.querySelector('h1').innerText != 'Wide Open'")));
    // From picture to picture.
    const QString picture =
        program.InPage(QStringLiteral("document.querySelector('main figure img[onmouseenter]').alt"))
            .toString();
    program.ClickElement(QStringLiteral("document.querySelector('a[rel=next]')"));
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("document.querySelector('a.overview') != null && "
                       "document.querySelector('main figure img[onmouseenter]').alt != '%1'")
            .arg(picture)));
    program.ClickElement(QStringLiteral("document.querySelector('a[rel=prev]')"));
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("document.querySelector('main figure img[onmouseenter]').alt == '%1'").arg(picture)));
    program.ClickElement(QStringLiteral("document.querySelector('a.overview')"));
    ASSERT_TRUE(program.WaitInPage(Heading("Wide Open")));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Navigation, ALayoutThatBreaksShowsItsErrorUntilItIsMended)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    const QByteArray good = "<html><head></head><body><p id=\"good\">Good</p></body></html>";
    program.UseOwnData();
    program.WriteLayout(QStringLiteral("second"), good);
    program.Start({project});
    program.WriteLayout(QStringLiteral("second"), "<html><body>\n<p><%nonsense%></p></body></html>");
    const QStringList chooseLast{QStringLiteral("alt+g"), QStringLiteral("l"), QStringLiteral("Up"),
                                 QStringLiteral("Return")};
    program.PressKeys(chooseLast);
    ASSERT_TRUE(program.WaitInPage(
        QStringLiteral("document.body.innerText.includes('Error occured during layout loading:')")));
    EXPECT_TRUE(program.InPage(QStringLiteral("document.body.innerText"))
                    .toString()
                    .contains(QStringLiteral("nonsense")));
    EXPECT_TRUE(program.InPage(QStringLiteral("document.querySelector('.error_text').innerText"))
                    .toString()
                    .contains(QStringLiteral("nonsense")));
    program.TakePicture(QStringLiteral("error-page"));
    program.WriteLayout(QStringLiteral("second"), good);
    program.FocusWindow(QStringLiteral("Vistorama - "));
    program.PressKeys(chooseLast);
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.getElementById('good') != null")));
    EXPECT_EQ(program.Terminate(), 0);
}
