#include "document/pictures/PictureInfo.h"

#include "TestProject.h"
#include "common/FileSystem.h"

namespace {

std::unique_ptr<CFilePictureInfo> Record(const QString& path, DateValue date = 0)
{
    auto record = std::make_unique<CFilePictureInfo>(path, 0);
    record->SetDate(date);
    return record;
}

QString Property(const CPictureInfo& record, const QString& name)
{
    const std::optional<CVariant> value = record.GetVariable(name);
    return value ? Described(*value) : QStringLiteral("not found");
}

} // namespace

TEST(FilePictureInfo, AnswersItsProperties)
{
    const struct {
        const char* path;
        const char* property;
        const char* expected;
    } rows[] = {
        {"/p/A.b.JPG", "file_name", "A.b.JPG"},
        {"/p/A.b.JPG", "File_Name_Base", "A.b"},
        {"/p/A.b.JPG", "file_name_extension", "JPG"},
        {"C:\\p\\x.jpg", "file_name", "x.jpg"},
        {"x.jpg", "file_name", "x.jpg"},
        {"/p/name", "file_name_base", "name"},
        {"/p/name", "file_name_extension", ""},
        {"/p.q/name", "file_name_extension", "q/name"},
        {"/p/x.jpg", "file_creation_time", "date:7"},
        {"/p/x.jpg", "TITLE", "t"},
        {"/p/x.jpg", "images_count", "not found"},
    };
    for (const auto& row : rows) {
        const auto record = Record(QString::fromUtf8(row.path), 7);
        record->SetVariable(QStringLiteral("Title"), CVariant(QStringLiteral("t")));
        EXPECT_EQ(Property(*record, QString::fromUtf8(row.property)), QString::fromUtf8(row.expected))
            << row.path << " " << row.property;
    }
    EXPECT_EQ(Property(*Record(QStringLiteral("a")), QString()), QStringLiteral("not found"));
}

TEST(FilePictureInfo, AVariableOfAPropertysNameDoesNotHideTheProperty)
{
    const auto record = Record(QStringLiteral("/p/a.jpg"));
    record->SetVariable(QStringLiteral("file_name"), CVariant(QStringLiteral("other")));
    EXPECT_EQ(Property(*record, QStringLiteral("file_name")), QStringLiteral("a.jpg"));
}

TEST(GalleryPictureInfo, AnswersForTheChildGallery)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    test.project.AddChildGallery(0);
    CGallery& child = *test.project.FindGallery(1);
    child.AddPicture(test.MakePicture(QStringLiteral("a.jpg"), QDate(2020, 1, 1)));
    child.AddPicture(test.MakePicture(QStringLiteral("b.jpg"), QDate(2020, 1, 3)));
    child.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"),
                            CVariant(QStringLiteral("Kids")));
    child.SetTemplatePage(QStringLiteral("c.html"));
    root.SetTemplatePage(QStringLiteral("r.html"));
    CPictureInfo& entry = *root.GetPictures().GetAt(0);
    const QByteArray coverName = ExtractLastName(child.GetCover().GetName()).toUtf8();
    const QByteArray coverBase = coverName.chopped(4); // ".png"
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"file_creation_time", "date:43833.5"},
        {"file_name", coverName.constData()},
        {"file_name_base", coverBase.constData()},
        {"file_name_extension", "png"},
        {"name", "Kids"},
        {"NAME", "Kids"},
        {"parent_url", "../r.html"},
        {"images_count", "not found"},
        {"unknown", "not found"},
    };
    for (const auto& row : rows) {
        const std::optional<CVariant> value = entry.GetVariable(QString::fromUtf8(row.name));
        EXPECT_EQ(value ? Described(*value) : QStringLiteral("not found"), QString::fromUtf8(row.expected))
            << row.name;
    }
    EXPECT_EQ(entry.GetVariable(QString()), std::nullopt);
    EXPECT_EQ(entry.GetDate(), 43831.5);
    EXPECT_TRUE(entry.GetThumbnailPath().isEmpty());
    entry.SetAngle(2);
    EXPECT_EQ(entry.GetAngle(), 2);
}

TEST(GalleryPictureInfo, KeepsItsVariablesInTheChildGallery)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    test.project.AddChildGallery(0);
    CPictureInfo& entry = *root.GetPictures().GetAt(0);
    entry.SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("t")));
    entry.GetVariables().Set(QStringLiteral("lost"), CVariant(1));
    EXPECT_TRUE(entry.GetVariables().GetEntries().empty());
    EXPECT_EQ(test.ValueOf(*test.project.FindGallery(1), QStringLiteral("gallery"), QStringLiteral("title")),
              QStringLiteral("t"));
}

TEST(GalleryPictureInfo, RemovingAPictureCountsTheChildrensDatesToo)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    root.AddPicture(test.MakePicture(QStringLiteral("own.jpg"), QDate(2021, 1, 1)));
    test.project.AddChildGallery(0);
    test.project.FindGallery(1)->AddPicture(test.MakePicture(QStringLiteral("old.jpg"), QDate(2020, 1, 1)));
    const QString content = QStringLiteral("content");
    EXPECT_EQ(test.ValueOf(root, content, QStringLiteral("min_creation_date")),
              QStringLiteral("date:44197.5"));
    root.RemovePicture(0);
    EXPECT_EQ(test.ValueOf(root, content, QStringLiteral("min_creation_date")),
              QStringLiteral("date:43831.5"));
}
