#include "shell/frame/MissingPictures.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include "shell_support/DialogTools.h"
#include "support/ProjectFixture.h"

namespace {

// Answers all dialogs on the way to a found picture, each as often as it comes: in the file dialog a person
// chooses a path, in the list what is found is read and agreed to or not, and a message is read.
class CFinder {
public:
    explicit CFinder(const QString& path, bool agrees = true) : path(path), agrees(agrees)
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Look(); });
        timer.start(0);
    }

    QStringList rows; // of the list: the name, where it was found
    QStringList messages;
    int asked = 0; // for a path

private:
    void Look()
    {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (!dialog || dialog == last) {
            return;
        }
        last = dialog;
        if (auto* const files = qobject_cast<QFileDialog*>(dialog)) {
            ++asked;
            QDir::setCurrent(QDir(path).exists() ? path : QFileInfo(path).path());
            files->setDirectory(QFileInfo(path).path());
            files->selectFile(path);
            files->QDialog::accept(); // as it is after the wait for its model of the folder
        } else if (auto* const message = qobject_cast<QMessageBox*>(dialog)) {
            messages += message->text();
            message->accept();
        } else if (auto* const list = dialog->findChild<QTreeWidget*>(QStringLiteral("matches"))) {
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                rows += list->topLevelItem(i)->text(0) + QLatin1Char(' ') + list->topLevelItem(i)->text(1);
            }
            agrees ? static_cast<QDialog*>(dialog)->accept() : static_cast<QDialog*>(dialog)->reject();
        }
    }

    const QString path;
    const bool agrees;
    QTimer timer;
    QPointer<QWidget> last; // another one may take its address
};

// A project with the pictures a.png and b.png, whose folder has moved from "photos" to "moved".
class MissingPictures : public testing::Test {
protected:
    CProjectFixture fixture;
    CGalleryProject* project = nullptr;
    int32_t moved = 0;
    const MoveFound move = [this](const std::vector<FileMove>& moves) {
        const int32_t now = project->Relocate(moves);
        moved += now;
        return now > 0;
    };

    void SetUp() override
    {
        project = &fixture.NewProject();
        for (const char* name : {"a.png", "b.png"}) {
            const QString path = fixture.WritePicture(QString::fromLatin1(name));
            fixture.GetRoot().AppendPicture(path, 0);
        }
        fixture.GetRoot().RotatePicture(0, true);
        ASSERT_TRUE(QDir().rename(Path("photos"), Path("moved")));
        project->LookForFiles();
        ASSERT_EQ(project->GetAbsentFiles().size(), 2U);
    }

    QString Path(const char* name) const { return fixture.scratch.Path(QString::fromUtf8(name)); }
    QStringList Paths()
    {
        QStringList paths;
        for (int32_t i = 0; i < fixture.GetRoot().GetPictures().GetCount(); ++i) {
            paths += fixture.GetRoot().GetPictures().GetAt(i)->GetPath();
        }
        return paths;
    }
};

} // namespace

TEST_F(MissingPictures, AreFoundBelowAFolderAndMovedIfThePersonAgrees)
{
    const QStringList before = Paths();
    for (const bool agrees : {false, true}) {
        const CFinder finder(Path("moved"), agrees);
        FindMissingPictures(*project, move, nullptr);
        EXPECT_EQ(finder.rows, QStringList({QStringLiteral("a.png a.png"), QStringLiteral("b.png b.png")}));
        EXPECT_EQ(Paths(), agrees ? QStringList({Path("moved/a.png"), Path("moved/b.png")}) : before);
    }
    EXPECT_TRUE(project->GetAbsentFiles().empty());
}

TEST_F(MissingPictures, AFolderWithoutThemIsSaid)
{
    ASSERT_TRUE(QDir().mkpath(Path("empty")));
    const CFinder finder(Path("empty"));
    FindMissingPictures(*project, move, nullptr);
    EXPECT_EQ(moved, 0);
    EXPECT_EQ(finder.rows, QStringList());
    ASSERT_EQ(finder.messages.size(), 1);
    EXPECT_TRUE(finder.messages[0].contains(Path("empty"))) << qPrintable(finder.messages[0]);
}

TEST_F(MissingPictures, WhereNoneIsMissingNoFolderIsAskedFor)
{
    ASSERT_TRUE(QDir().rename(Path("moved"), Path("photos")));
    project->LookForFiles();
    const CFinder finder(Path("photos"));
    FindMissingPictures(*project, move, nullptr);
    EXPECT_EQ(moved, 0);
    EXPECT_EQ(finder.asked, 0);
    EXPECT_EQ(finder.messages,
              QStringList(QStringLiteral("All pictures and watermarks of this project are there.")));
}

TEST_F(MissingPictures, OneIsShownByHandAndTheOthersBesideItAreOffered)
{
    const int32_t angle = fixture.GetRoot().GetPictures().GetAt(0)->GetAngle();
    ASSERT_NE(angle, 0);
    ASSERT_TRUE(QFile::rename(Path("moved/a.png"), Path("moved/other.png")));
    const CFinder finder(Path("moved/other.png"));
    FindMissingPicture(*project, Path("photos/a.png"), move, nullptr);
    EXPECT_EQ(moved, 2);
    EXPECT_EQ(finder.rows, QStringList(QStringLiteral("b.png b.png")));
    EXPECT_EQ(Paths(), QStringList({Path("moved/other.png"), Path("moved/b.png")}));
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetAt(0)->GetAngle(), angle);
}

TEST_F(MissingPictures, OneFileCantStandForTwo)
{
    ASSERT_TRUE(QDir().mkpath(Path("photos")));
    const QString other = fixture.WritePicture(QStringLiteral("c.png"));
    fixture.GetRoot().AppendPicture(other, 2);
    const QStringList before = Paths();
    const CFinder finder(other);
    FindMissingPicture(*project, Path("photos/a.png"), move, nullptr);
    EXPECT_EQ(moved, 0);
    ASSERT_EQ(finder.messages.size(), 1);
    EXPECT_TRUE(finder.messages[0].contains(other)) << qPrintable(finder.messages[0]);
    EXPECT_EQ(Paths(), before);
}

TEST_F(MissingPictures, OneThatHasComeBackIsNotAskedFor)
{
    ASSERT_TRUE(QDir().rename(Path("moved"), Path("photos")));
    project->LookForFiles();
    const CFinder finder(Path("photos/a.png"));
    FindMissingPicture(*project, Path("photos/a.png"), move, nullptr);
    EXPECT_EQ(moved, 0);
    EXPECT_EQ(finder.asked, 0);
}
