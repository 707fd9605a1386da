#include "document/project/ProjectIdentity.h"

#include <QDir>
#include <QFile>

#include "TestProject.h"
#include "common/FileSystem.h"

namespace {

constexpr const char* SomeId = "0123456789abcdef0123456789ABCDEF";

QByteArray WithId(const QByteArray& id)
{
    return "<project version=\"2.0\" id=\"" + id + "\"><gallery/></project>";
}

} // namespace

TEST(ProjectIdentity, ANewProjectHasAnIdOfItsOwn)
{
    CTestProject test;
    test.project.New();
    const QString first = test.project.GetId();
    EXPECT_TRUE(IsProjectId(first));
    test.project.New();
    EXPECT_TRUE(IsProjectId(test.project.GetId()));
    EXPECT_NE(test.project.GetId(), first);
    test.project.Clear();
    EXPECT_EQ(test.project.GetId(), QString());
}

TEST(ProjectIdentity, IsKeptBySavingAndReadBack)
{
    CTestProject test;
    test.project.New();
    const QString id = test.project.GetId();
    test.project.Save(test.ProjectPath());
    test.project.Save(test.ProjectPath());
    EXPECT_EQ(test.project.GetId(), id);
    CGalleryProject again(test.environment);
    again.Open(test.ProjectPath());
    EXPECT_EQ(again.GetId(), id);
    again.Save(test.ProjectPath());
    EXPECT_EQ(again.GetId(), id);
}

TEST(ProjectIdentity, AFileWithoutOneGetsOneWhenItIsSaved)
{
    for (const QByteArray& id :
         {QByteArray(), QByteArray("x"), QByteArray(10'000, 'a'), QByteArray("../../etc"),
          QByteArray(SomeId).replace("0", "g"), QByteArray(SomeId) + '0'}) {
        CTestProject test;
        test.LoadXml(WithId(id));
        EXPECT_EQ(test.project.GetId(), QString()) << id.left(40).data();
        test.project.Save(test.ProjectPath());
        EXPECT_TRUE(IsProjectId(test.project.GetId())) << id.left(40).data();
        EXPECT_TRUE(test.scratch.Read(QStringLiteral("site/My.gallery"))
                        .contains("id=\"" + test.project.GetId().toUtf8() + "\""));
    }
}

TEST(ProjectIdentity, ASaveUnderAnotherPathMakesAnotherProject)
{
    CTestProject test;
    test.LoadXml(WithId(SomeId));
    EXPECT_EQ(test.project.GetId(), QString::fromUtf8(SomeId));
    test.project.Save(test.Path(QStringLiteral("site/Copy.gallery")));
    const QString copy = test.project.GetId();
    EXPECT_TRUE(IsProjectId(copy));
    EXPECT_NE(copy, QString::fromUtf8(SomeId));
    test.project.Save(test.Path(QStringLiteral("site/Copy.gallery")));
    EXPECT_EQ(test.project.GetId(), copy);
    EXPECT_TRUE(test.scratch.Read(QStringLiteral("site/My.gallery")).contains(SomeId));
}

TEST(ProjectIdentity, AnotherWayToTheSameFileIsTheSameProject)
{
    CTestProject test;
    test.LoadXml(WithId(SomeId));
    ASSERT_TRUE(QFile::link(test.ProjectPath(), test.Path(QStringLiteral("link.gallery"))));
    for (const char* path : {"site/../site/My.gallery", "site/./My.gallery", "link.gallery"}) {
        test.project.Save(test.Path(QString::fromUtf8(path)));
        EXPECT_EQ(test.project.GetId(), QString::fromUtf8(SomeId)) << path;
    }
}

TEST(ProjectIdentity, AFailedSaveKeepsIt)
{
    CTestProject test;
    test.LoadXml(WithId(SomeId));
    test.scratch.Write(QStringLiteral("file"), "");
    EXPECT_THROW(test.project.Save(test.Path(QStringLiteral("file/My.gallery"))), CWin32Exception);
    EXPECT_EQ(test.project.GetId(), QString::fromUtf8(SomeId));
    test.project.Save(test.ProjectPath());
    EXPECT_EQ(test.project.GetId(), QString::fromUtf8(SomeId));
}

TEST(ProjectFile, KeepsTheSuffixesOfNames)
{
    CTestProject test;
    CGallery& root = test.NewGallery(2);
    test.project.AddChildGallery(0);
    root.GetPictures().GetAt(1)->SetNameSuffix(QStringLiteral("_a-7"));
    root.GetPictures().GetAt(2)->SetNameSuffix(QStringLiteral("cover"));
    test.project.Save(test.ProjectPath());
    const QByteArray file = test.scratch.Read(QStringLiteral("site/My.gallery"));
    EXPECT_EQ(file.count("name_suffix="), 2);
    EXPECT_TRUE(file.contains("<picture index=\"1\" name_suffix=\"cover\"/>"));
    test.project.Load(test.ProjectPath());
    const CPictureList& pictures = test.project.GetRootGallery()->GetPictures();
    EXPECT_EQ(pictures.GetAt(0)->GetNameSuffix(), QString());
    EXPECT_EQ(pictures.GetAt(1)->GetNameSuffix(), QStringLiteral("_a-7"));
    EXPECT_EQ(pictures.GetAt(2)->GetNameSuffix(), QStringLiteral("cover"));
}

TEST(ProjectFileReading, ASuffixThatCouldLeadOutOfAFolderIsNone)
{
    for (const QByteArray& suffix : {QByteArray("/../x"), QByteArray("a.b"), QByteArray("\\"),
                                     QByteArray("a b"), QByteArray("\xc3\xa4"), QByteArray(33, 'a')}) {
        CTestProject test;
        const QByteArray path = test.MakePicture(QStringLiteral("a.jpg")).toUtf8();
        test.LoadXml("<project><gallery><picture_list><picture path=\"" + path + "\" name_suffix=\"" +
                     suffix + "\"/></picture_list></gallery></project>");
        EXPECT_EQ(test.project.GetRootGallery()->GetPictures().GetAt(0)->GetNameSuffix(), QString())
            << suffix.data();
    }
}
