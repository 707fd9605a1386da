#include "shell/frame/PictureClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>
#include <gtest/gtest.h>

#include "document/project/GalleryProject.h"
#include "editing/EditHistory.h"
#include "support/ProjectFixture.h"

namespace {

// A project of two galleries; the first has the pictures a.png to c.png.
class PictureClipboard : public testing::Test {
protected:
    PictureClipboard()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<html></html>");
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.NewProject();
        history = std::make_unique<CEditHistory>(fixture.GetProject(), [](const Edited&) {});
        for (const char* name : {"a.png", "b c.png", "c.png"}) {
            paths += fixture.WritePicture(QString::fromLatin1(name));
            Root().AppendPicture(paths.back(), 0);
        }
        fixture.GetProject().AddChildGallery(0);
        QGuiApplication::clipboard()->clear();
    }

    CGallery& Root() { return fixture.GetRoot(); }
    CGallery& Child() { return *fixture.GetProject().FindGallery(1); }
    static const QMimeData& Clipboard() { return *QGuiApplication::clipboard()->mimeData(); }

    CProjectFixture fixture;
    std::unique_ptr<CEditHistory> history;
    QStringList paths;
};

} // namespace

TEST_F(PictureClipboard, PicturesGoToAnotherGalleryWithTheirTexts)
{
    Root().GetPictures().GetAt(1)->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("Blue")));
    EXPECT_EQ(CopyToClipboard(Root(), {1, 2, 3}), 2); // the third is a gallery
    const std::optional<Act> act = PasteFromClipboard(Child(), -1);
    ASSERT_TRUE(act.has_value());
    EXPECT_TRUE(history->Do(*act));
    ASSERT_EQ(Child().GetPictures().GetCount(), 2);
    EXPECT_EQ(Child().GetPictures().GetAt(0)->GetVariable(QStringLiteral("title")),
              CVariant(QStringLiteral("Blue")));
    EXPECT_EQ(history->GetStack().undoText(), QStringLiteral("Paste 2 Pictures"));
}

TEST_F(PictureClipboard, FileManagersFindTheFiles)
{
    CopyToClipboard(Root(), {0, 1});
    const QUrl first = QUrl::fromLocalFile(paths[0]);
    const QUrl second = QUrl::fromLocalFile(paths[1]);
    EXPECT_EQ(Clipboard().urls(), (QList<QUrl>{first, second}));
    EXPECT_EQ(Clipboard().data(QStringLiteral("x-special/gnome-copied-files")),
              "copy\n" + first.toEncoded() + '\n' + second.toEncoded());
    EXPECT_EQ(CopyToClipboard(QStringList{paths[2]}), 1);
    EXPECT_EQ(Clipboard().urls(), QList<QUrl>{QUrl::fromLocalFile(paths[2])});
}

TEST_F(PictureClipboard, FilesOfAFileManagerAreAdded)
{
    auto* const data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(paths[2]), QUrl::fromLocalFile(paths[0]),
                   QUrl::fromLocalFile(QStringLiteral("/no/notes.txt")),
                   QUrl(QStringLiteral("https://example.org/a.jpg"))});
    QGuiApplication::clipboard()->setMimeData(data);
    const std::optional<Act> act = PasteFromClipboard(Child(), 0);
    ASSERT_TRUE(act.has_value());
    EXPECT_TRUE(history->Do(*act));
    EXPECT_EQ(Child().GetPictures().GetCount(), 2);
    EXPECT_EQ(Child().GetPictures().GetAt(0)->GetPath(), paths[2]);
}

TEST_F(PictureClipboard, WithoutPicturesThereIsNothingToPasteOrCopy)
{
    EXPECT_FALSE(PasteFromClipboard(Child(), 0).has_value());
    QGuiApplication::clipboard()->setText(QStringLiteral("words"));
    EXPECT_EQ(CopyToClipboard(Root(), {3, 7, -1}), 0);
    EXPECT_EQ(CopyToClipboard(QStringList()), 0);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("words"));
    EXPECT_FALSE(PasteFromClipboard(Child(), 0).has_value());
}
