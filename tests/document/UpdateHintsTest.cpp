#include "document/project/UpdateHints.h"

#include "TestProject.h"
#include "common/Trace.h"
#include "document/project/GalleryProjectConsumer.h"

TEST(UpdateHints, NumbersAndConcernedViewsStandInATable)
{
    const struct {
        UpdateHint hint;
        int32_t number;
        const char* views; // g galleries, f folder, p pages
    } rows[] = {
        {UpdateHint::Deploy, 0x0410, ""},
        {UpdateHint::CoverChanged, 0x1000, "g"},
        {UpdateHint::FolderChosen, 0x2401, "f"},
        {UpdateHint::FolderReady, 0x240F, "f"},
        {UpdateHint::StyleChosen, 0x4406, "p"},
        {UpdateHint::LayoutChosen, 0x4407, "p"},
        {UpdateHint::PictureMovedUp, 0x4409, "p"},
        {UpdateHint::PictureMovedDown, 0x440A, "p"},
        {UpdateHint::PictureTurnedLeft, 0x440C, "p"},
        {UpdateHint::LinkFollowed, 0x440D, "p"},
        {UpdateHint::TextEdited, 0x440E, "p"},
        {UpdateHint::ProjectRenamed, 0x4411, "p"},
        {UpdateHint::PictureTurnedRight, 0x4414, "p"},
        {UpdateHint::VisibilityChosen, 0x4415, "p"},
        {UpdateHint::PictureAdded, 0x6408, "p"},
        {UpdateHint::PictureRemoved, 0x640B, "fp"},
        {UpdateHint::ProjectReplaced, 0x7000, "gfp"},
        {UpdateHint::PicturesAdded, 0x7412, "gfp"},
        {UpdateHint::GalleryChosen, 0x7418, "gfp"},
        {UpdateHint::GalleryRemoved, 0x7419, "gp"},
        {UpdateHint::ParentGalleryAdded, 0x741A, "gp"},
        {UpdateHint::ChildGalleryAdded, 0x741B, "gp"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<int32_t>(row.hint), row.number);
        const std::string views = std::string(ConcernsGalleriesView(row.hint) ? "g" : "") +
                                  (ConcernsFolderView(row.hint) ? "f" : "") +
                                  (ConcernsPagesView(row.hint) ? "p" : "");
        EXPECT_EQ(views, row.views) << std::hex << row.number;
    }
}

namespace {

class CRecordingConsumer final : public CGalleryProjectConsumer {
public:
    CRecordingConsumer(QStringList& log, const QString& name) : log(log), name(name) {}
    void UpdateView(UpdateHint hint, CGalleryProject&) override
    {
        log += QStringLiteral("%1 %2").arg(name).arg(static_cast<int32_t>(hint));
    }

private:
    QStringList& log;
    const QString name;
};

class CTraceToList {
public:
    explicit CTraceToList(QStringList& log)
    {
        SetTraceSink([&log](const QString& line) { log += line; });
    }
    ~CTraceToList() { SetTraceSink(nullptr); }
};

} // namespace

TEST(GalleryProjectConsumer, TellsItsConsumersInOrderAndTracesEachCall)
{
    CTestProject test;
    QStringList log;
    const CTraceToList trace(log);
    CRecordingConsumer source(log, QStringLiteral("source"));
    CRecordingConsumer first(log, QStringLiteral("first"));
    CRecordingConsumer second(log, QStringLiteral("second"));
    source.AddConsumer(first);
    source.AddConsumer(second);
    source.UpdateProject(UpdateHint::GalleryChosen, 3, test.project);
    EXPECT_EQ(log, (QStringList{QStringLiteral("CGalleryProjectConsumer::UpdateProject entering"),
                                QStringLiteral("UpdateView with hint 29720"), QStringLiteral("first 29720"),
                                QStringLiteral("UpdateView with hint 29720"), QStringLiteral("second 29720"),
                                QStringLiteral("CGalleryProjectConsumer::UpdateProject exiting")}));
}

TEST(GalleryProjectConsumer, ARingOfConsumersDoesNotRunInCircles)
{
    CTestProject test;
    QStringList log;
    CRecordingConsumer a(log, QStringLiteral("a"));
    CRecordingConsumer b(log, QStringLiteral("b"));
    a.AddConsumer(b);
    b.AddConsumer(a);
    a.UpdateProject(UpdateHint::StyleChosen, std::monostate(), test.project);
    EXPECT_EQ(log, QStringList{QStringLiteral("b 17414")});
}
