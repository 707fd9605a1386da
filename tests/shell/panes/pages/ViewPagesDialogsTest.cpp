#include <gmock/gmock.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTimer>
#include <gtest/gtest.h>

#include "PagesWindow.h"

using testing::ElementsAre;

// The dialogs that the buttons of a page open, as a person uses them.

namespace {

// Answers the next dialog and ends it.
class CAnswer {
public:
    explicit CAnswer(std::function<bool(QDialog&)> accepts)
    {
        QObject::connect(&timer, &QTimer::timeout, [this, accepts = std::move(accepts)] {
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog) {
                timer.stop();
                wasAsked = true;
                dialog->done(accepts(*dialog) ? QDialog::Accepted : QDialog::Rejected);
            }
        });
        timer.start(1);
    }
    bool WasAsked() const { return wasAsked && !QApplication::activeModalWidget(); }

private:
    QTimer timer;
    bool wasAsked = false;
};

// Runs the call in the page and waits until its dialog was answered.
void Call(CPagesWindow& window, const char* call, const std::function<bool(QDialog&)>& accepts)
{
    const CAnswer answer(accepts);
    CallByKey(window.GetPage(), QString::fromUtf8(call));
    EXPECT_TRUE(WaitUntil([&] { return answer.WasAsked(); })) << call;
}

QString Variable(CPagesWindow& window, const char* name)
{
    return window.GetGallery()
        .GetObjectVariable(QStringLiteral("gallery"), QString::fromLatin1(name))
        ->GetString();
}

template <class Control>
Control* Find(const QDialog& dialog, const char* name)
{
    return dialog.findChild<Control*>(QString::fromLatin1(name));
}

constexpr char editHome[] = "external.EditReference('Home','gallery.home_href','gallery.home_text')";
constexpr char editTitle[] = "external.EditText('gallery.title','Heading',gallery_title.innerHTML,1,2,false)";

} // namespace

TEST(ViewPagesDialogs, ATextIsEditedAndThePageShowsIt)
{
    CPagesWindow window(1);
    Call(window, editTitle, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Heading"));
        QLineEdit* const text = Find<QLineEdit>(dialog, "text");
        EXPECT_EQ(text->text(), QStringLiteral("Title of 1")); // no value yet: as the page shows it
        text->setText(QStringLiteral("My <b>title</b>"));
        return true;
    });
    window.WaitForPageShown(2);
    EXPECT_EQ(Variable(window, "title"), QStringLiteral("My <b>title</b>"));
    EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("gallery_title.textContent")).toString(),
              QStringLiteral("My title"));
    ASSERT_EQ(window.edited.size(), 1U);
    EXPECT_EQ(window.edited[0].name, QStringLiteral("Edit Text"));
    // The next time the value is edited, not the text of the page.
    Call(window, editTitle, [](QDialog& dialog) {
        EXPECT_EQ(Find<QLineEdit>(dialog, "text")->text(), QStringLiteral("My <b>title</b>"));
        return false;
    });
}

TEST(ViewPagesDialogs, ACancelledTextSendsNothing)
{
    CPagesWindow window(1);
    Call(window, editTitle, [](QDialog& dialog) {
        Find<QLineEdit>(dialog, "text")->setText(QStringLiteral("other"));
        return false;
    });
    EXPECT_EQ(Variable(window, "title"), QString());
    EXPECT_TRUE(window.edited.empty());
    EXPECT_EQ(window.GetShownCount(), 1);
}

TEST(ViewPagesDialogs, APropertyOfTheGalleryShowsTheNoteAndAnotherDoesNot)
{
    CPagesWindow window(1);
    const struct {
        const char* property;
        bool note;
    } rows[] = {
        {"gallery.title", true}, {"GALLERY.Title", true}, {"photo1.title", false}, {"page.title", false}};
    for (const auto& row : rows) {
        Call(window, (std::string("external.EditText('") + row.property + "','N','t',1,2,true)").c_str(),
             [&](QDialog& dialog) {
                 EXPECT_EQ(Find<QLabel>(dialog, "note") != nullptr, row.note) << row.property;
                 return false;
             });
    }
}

TEST(ViewPagesDialogs, ATextOfSeveralLinesKeepsItsLineBreaks)
{
    CPagesWindow window(1);
    const char* const call = "external.EditText('photo1.title','N','t',1,2,true)";
    Call(window, call, [](QDialog& dialog) {
        QPlainTextEdit* const text = Find<QPlainTextEdit>(dialog, "text");
        EXPECT_NE(text, nullptr);
        text->setPlainText(QStringLiteral("one\ntwo"));
        return true;
    });
    window.WaitForPageShown(2);
    EXPECT_EQ(window.GetGallery().GetPictures().GetAt(0)->GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("one</br>two")));
    Call(window, call, [](QDialog& dialog) {
        EXPECT_EQ(Find<QPlainTextEdit>(dialog, "text")->toPlainText(), QStringLiteral("one\ntwo"));
        return false;
    });
}

TEST(ViewPagesDialogs, AReferenceIsEdited)
{
    CPagesWindow window(1);
    Call(window, editHome, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Home"));
        EXPECT_EQ(Find<QLineEdit>(dialog, "url")->text(), QString());
        Find<QLineEdit>(dialog, "url")->setText(QStringLiteral("large.html"));
        Find<QLineEdit>(dialog, "text")->setText(QStringLiteral("Look"));
        return true;
    });
    window.WaitForPageShown(2);
    EXPECT_EQ(Variable(window, "home_href"), QStringLiteral("large.html"));
    EXPECT_EQ(Variable(window, "home_text"), QStringLiteral("Look"));
    ASSERT_EQ(window.edited.size(), 1U);
    EXPECT_EQ(window.edited[0].name, QStringLiteral("Edit Link"));
    Call(window, editHome, [](QDialog& dialog) {
        EXPECT_EQ(Find<QLineEdit>(dialog, "url")->text(), QStringLiteral("large.html"));
        EXPECT_EQ(Find<QLineEdit>(dialog, "text")->text(), QStringLiteral("Look"));
        return false;
    });
    EXPECT_EQ(window.edited.size(), 1u);
}

TEST(ViewPagesDialogs, ElementsOfThePageAreHidden)
{
    CPagesWindow window(1);
    EXPECT_TRUE(window.GetPageText().contains(QStringLiteral("The footer")));
    const auto choose = [](Qt::CheckState state, bool accept) {
        return [state, accept](QDialog& dialog) {
            QListWidget* const elements = Find<QListWidget>(dialog, "elements");
            EXPECT_EQ(elements->count(), 1);
            EXPECT_EQ(elements->item(0)->text(), QStringLiteral("Footer"));
            elements->item(0)->setCheckState(state);
            return accept;
        };
    };
    // On cancel the function ends without any update.
    Call(window, "external.ChangeVisibility('Footer')", choose(Qt::Unchecked, false));
    EXPECT_TRUE(window.edited.empty());
    EXPECT_EQ(window.GetShownCount(), 1);
    Call(window, "external.ChangeVisibility('Footer')", choose(Qt::Unchecked, true));
    window.WaitForPageShown(2);
    EXPECT_FALSE(window.GetPageText().contains(QStringLiteral("The footer")));
    EXPECT_EQ(window.edited.size(), 1U);
    // The toolbar has the command as well.
    const CAnswer answer(choose(Qt::Checked, true));
    window.GetView().GetToolBar().findChild<QAction*>(QStringLiteral("ChangeVisibility"))->trigger();
    EXPECT_TRUE(WaitUntil([&] { return answer.WasAsked(); }));
    window.WaitForPageShown(3);
    EXPECT_TRUE(window.GetPageText().contains(QStringLiteral("The footer")));
}

// What would be typed would be lost.
TEST(ViewPagesDialogs, APropertyThatIsNoneIsToldOfBeforeAnythingIsTyped)
{
    CPagesWindow window(1);
    const std::string rows[] = {"EditText('nopoint','N','t',1,2,false)",
                                "EditText('','N','t',1,2,false)",
                                "EditText('nobody.title','N','t',1,2,false)",
                                "EditText('photo9.title','N','t',1,2,false)",
                                "EditReference('N','nopoint','gallery.home_text')",
                                "EditReference('N','gallery.home_href','nobody.text')"};
    for (const std::string& row : rows) {
        Call(window, ("external." + row).c_str(), [&](QDialog& dialog) {
            const auto* const box = qobject_cast<QMessageBox*>(&dialog);
            EXPECT_TRUE(box && box->text().contains(QStringLiteral("\"N\""))) << row;
            return true;
        });
    }
    EXPECT_EQ(window.GetShownCount(), 1);
    EXPECT_TRUE(window.edited.empty());
}

TEST(ViewPagesDialogs, WhatIsNotTypedIsNotStored)
{
    CPagesWindow window(1);
    const auto accept = [](QDialog&) {
        return true;
    };
    // The text that the layout shows stays the layout's.
    Call(window, editTitle, accept);
    Call(window, editHome, accept);
    const auto find = [&](const char* name) {
        return window.GetGallery().GetObjectVariable(QStringLiteral("gallery"), QString::fromLatin1(name));
    };
    for (const char* name : {"title", "home_href", "home_text"}) {
        EXPECT_TRUE(!find(name) || find(name)->IsEmpty()) << name;
    }
    EXPECT_TRUE(window.edited.empty());
    // Of two texts the one that was changed.
    Call(window, editHome, [](QDialog& dialog) {
        Find<QLineEdit>(dialog, "url")->setText(QStringLiteral("large.html"));
        return true;
    });
    window.WaitForPageShown(2);
    EXPECT_EQ(Variable(window, "home_href"), QStringLiteral("large.html"));
    EXPECT_EQ(
        Ask(window.GetPage(), QStringLiteral("document.links[document.links.length - 1].text")).toString(),
        QStringLiteral("Go home"));
}

TEST(ViewPagesDialogs, ALinkWhoseTextIsTakenAwayHasTheTextOfTheLayout)
{
    CPagesWindow window(1);
    int pages = 1;
    for (const char* text : {"Look", ""}) {
        Call(window, editHome, [&](QDialog& dialog) {
            Find<QLineEdit>(dialog, "text")->setText(QString::fromLatin1(text));
            return true;
        });
        window.WaitForPageShown(++pages);
        EXPECT_EQ(Ask(window.GetPage(), QStringLiteral("document.links[document.links.length - 1].text"))
                      .toString(),
                  *text ? QString::fromLatin1(text) : QStringLiteral("Go home"));
    }
}

TEST(ViewPagesDialogs, AFloodOfCallsOpensOneDialog)
{
    CPagesWindow window(1);
    int dialogs = 0;
    Call(window,
         "(function(){ for (var i = 0; i < 10000; ++i) { "
         "external.EditText('gallery.title','N','t',1,2,false); } })()",
         [&](QDialog&) {
             ++dialogs;
             // The rest arrives while the dialog is open.
             PressKey(window.GetPage());
             Ask(window.GetPage(), QStringLiteral("1"));
             return true;
         });
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
