#include "document/pictures/PictureList.h"

#include <QFile>

#include "TestProject.h"

namespace {

QString Names(const CPictureList& list)
{
    QStringList names;
    for (int32_t position = 0; position < list.GetCount(); ++position) {
        names += list.GetAt(position)->GetPath();
    }
    return names.join(QLatin1Char(' '));
}

std::unique_ptr<CFilePictureInfo> Record(const QString& path, DateValue date = 0)
{
    auto record = std::make_unique<CFilePictureInfo>(path, 0);
    record->SetDate(date);
    return record;
}

QString Value(const CPictureList& list, const char* name)
{
    return Described(list.GetVariable(QString::fromUtf8(name)));
}

QString Property(const CPictureInfo& record, const QString& name)
{
    const std::optional<CVariant> value = record.GetVariable(name);
    return value ? Described(*value) : QStringLiteral("not found");
}

// A record whose path changes, as a child gallery's does with its cover.
class CMovingRecord final : public CPictureInfo {
public:
    explicit CMovingRecord(const QString& path) : path(path) {}
    QString GetPath() const override { return path; }
    DateValue GetDate() const override { return 0; }
    std::optional<CVariant> GetVariable(const QString&) const override { return std::nullopt; }
    void SetVariable(const QString&, const CVariant&) override {}
    int32_t GetAngle() const override { return 0; }
    void SetAngle(int32_t) override {}
    const CVariableMap& GetVariables() const override { return variables; }
    CVariableMap& GetVariables() override { return variables; }

    QString path;

private:
    CVariableMap variables;
};

constexpr double Day2020 = 43831.5; // 1 January 2020, noon

} // namespace

TEST(PictureList, AddsAtTheEndOrAtTheFront)
{
    CPictureList list;
    list.AddFile(QStringLiteral("a"), 0, false);
    list.AddFile(QStringLiteral("b"), 0, false);
    list.AddFile(QStringLiteral("c"), 3, true);
    EXPECT_EQ(Names(list), QStringLiteral("c a b"));
    EXPECT_EQ(list.GetAt(0)->GetAngle(), 3);
    EXPECT_EQ(list.GetAt(-1), nullptr);
    EXPECT_EQ(list.GetAt(3), nullptr);
}

TEST(PictureList, KeepsAThumbnailPathOnlyWhereOneIsGiven)
{
    CPictureList list;
    EXPECT_EQ(list.AddFile(QStringLiteral("a"), QStringLiteral("t"), 1, false).record->GetThumbnailPath(),
              QStringLiteral("t"));
    EXPECT_TRUE(list.AddFile(QStringLiteral("b"), 0, false).record->GetThumbnailPath().isEmpty());
    EXPECT_TRUE(CMovingRecord(QStringLiteral("c")).GetThumbnailPath().isEmpty());
}

TEST(PictureList, LetterCaseCounts)
{
    CPictureList list;
    list.AddFile(QStringLiteral("/p/A.jpg"), 1, false);
    EXPECT_TRUE(list.AddFile(QStringLiteral("/p/a.JPG"), 2, false).isNew);
    EXPECT_EQ(Names(list), QStringLiteral("/p/A.jpg /p/a.JPG"));
    EXPECT_EQ(list.Find(QStringLiteral("/p/a.JPG")), 1);
    EXPECT_EQ(list.Find(QStringLiteral("/P/a.JPG")), -1);
}

TEST(PictureList, APathThatIsThereAlreadyStaysAsItIs)
{
    CPictureList list;
    CPictureInfo* const first = list.AddFile(QStringLiteral("/p/a.jpg"), 3, false).record;
    first->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("old")));
    first->SetVariable(QStringLiteral("addition_date"), CVariant::Date(7.5));
    list.AddFile(QStringLiteral("/p/b.jpg"), 0, false);
    const AddedPicture again = list.AddFile(QStringLiteral("/p/a.jpg"), 2, true);
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(again.record, first);
    EXPECT_EQ(Names(list), QStringLiteral("/p/a.jpg /p/b.jpg"));
    EXPECT_EQ(first->GetAngle(), 3);
    EXPECT_EQ(Property(*first, QStringLiteral("title")), QStringLiteral("old"));
    EXPECT_EQ(Property(*first, QStringLiteral("addition_date")), QStringLiteral("date:7.5"));
}

TEST(PictureList, ARelocatedPictureKeepsPlaceTextsAndAngle)
{
    CTestProject test;
    CPictureList list;
    list.AddFile(QStringLiteral("/gone/a.jpg"), 3, false)
        .record->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("t")));
    list.AddFile(QStringLiteral("/gone/b.jpg"), 0, false);
    EXPECT_EQ(list.GetMinDate(), 0);
    const QString found = test.MakePicture(QStringLiteral("a.jpg"), QDate(2020, 1, 1));
    EXPECT_TRUE(list.Relocate(QStringLiteral("/gone/a.jpg"), found));
    EXPECT_EQ(Names(list), found + QStringLiteral(" /gone/b.jpg"));
    EXPECT_EQ(list.Find(found), 0);
    EXPECT_EQ(list.Find(QStringLiteral("/gone/a.jpg")), -1);
    EXPECT_TRUE(list.GetAt(0)->IsThere());
    EXPECT_EQ(list.GetAt(0)->GetAngle(), 3);
    EXPECT_EQ(Property(*list.GetAt(0), QStringLiteral("title")), QStringLiteral("t"));
    EXPECT_EQ(list.GetMinDate(), Day2020);
    EXPECT_EQ(list.GetMaxDate(), Day2020);
    EXPECT_FALSE(list.Relocate(QStringLiteral("/gone/b.jpg"), found));
    EXPECT_FALSE(list.Relocate(QStringLiteral("/never/there.jpg"), QStringLiteral("/x")));
    EXPECT_TRUE(list.Relocate(found, QStringLiteral("/gone/a.jpg")));
    EXPECT_FALSE(list.GetAt(0)->IsThere());
    EXPECT_EQ(list.GetMinDate(), 0);
}

TEST(PictureList, LooksWhichFilesHaveComeAndGone)
{
    CTestProject test;
    CPictureList list;
    const QString early = test.MakePicture(QStringLiteral("e.jpg"), QDate(2020, 1, 1));
    const QString late = test.MakePicture(QStringLiteral("l.jpg"), QDate(2020, 1, 3));
    list.AddFile(early, 0, false);
    list.AddFile(QStringLiteral("/gone.jpg"), 0, false);
    list.AddFile(late, 0, false);
    EXPECT_FALSE(list.LookForFiles());
    ASSERT_TRUE(QFile::rename(early, early + QStringLiteral("x")));
    EXPECT_TRUE(list.LookForFiles());
    EXPECT_FALSE(list.LookForFiles());
    EXPECT_FALSE(list.GetAt(0)->IsThere());
    EXPECT_EQ(list.GetAt(0)->GetDate(), 0);
    EXPECT_EQ(list.GetMinDate(), Day2020 + 2);
    ASSERT_TRUE(QFile::rename(early + QStringLiteral("x"), early));
    EXPECT_TRUE(list.LookForFiles());
    EXPECT_EQ(list.GetAt(0)->GetDate(), Day2020);
    EXPECT_EQ(list.GetMinDate(), Day2020);
    EXPECT_EQ(list.GetMaxDate(), Day2020 + 2);
}

TEST(PictureList, ANewFileRecordCarriesItsDateAndTheTimeOfItsAddition)
{
    CTestProject test;
    CPictureList list;
    const DateValue before = DateFromLocalTime(QDateTime::currentDateTime());
    CPictureInfo& record =
        *list.AddFile(test.MakePicture(QStringLiteral("a.jpg"), QDate(2020, 1, 1)), 0, false).record;
    const DateValue after = DateFromLocalTime(QDateTime::currentDateTime());
    EXPECT_EQ(record.GetDate(), Day2020);
    const CVariant addition = record.GetVariable(QStringLiteral("addition_date")).value_or(CVariant());
    EXPECT_EQ(addition.GetType(), CVariant::Type::Date);
    EXPECT_GE(addition.GetNumber(), before);
    EXPECT_LE(addition.GetNumber(), after);
}

TEST(PictureList, RemovingTheOldestOrTheLatestCountsTheDatesAnew)
{
    CTestProject test;
    CPictureList list;
    list.AddFile(test.MakePicture(QStringLiteral("b"), QDate(2020, 1, 2)), 0, false);
    list.AddFile(test.MakePicture(QStringLiteral("a"), QDate(2020, 1, 1)), 0, false);
    list.AddFile(test.MakePicture(QStringLiteral("c"), QDate(2020, 1, 3)), 0, false);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43831.5"));
    EXPECT_EQ(Value(list, "max_creation_date"), QStringLiteral("date:43833.5"));
    list.Remove(1);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43832.5"));
    list.Remove(1);
    EXPECT_EQ(Value(list, "max_creation_date"), QStringLiteral("date:43832.5"));
    list.Remove(0);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:0"));
    EXPECT_EQ(Value(list, "max_creation_date"), QStringLiteral("date:0"));
}

TEST(PictureList, AFileThatCanNotBeQueriedHasNoDateAndLeavesTheDatesAlone)
{
    CTestProject test;
    CPictureList list;
    list.AddFile(test.Path(QStringLiteral("missing.jpg")), 0, false);
    EXPECT_EQ(list.GetAt(0)->GetDate(), 0);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:0"));
    list.AddFile(test.MakePicture(QStringLiteral("a.jpg")), 0, false);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43831.5"));
    list.Remove(0);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43831.5"));
}

TEST(PictureList, RemovingARecordWithoutDateRecountsOnlyWhereThereIsNoOldestYet)
{
    CPictureList list;
    list.Add(Record(QStringLiteral("none")), false);
    list.Add(Record(QStringLiteral("dated"), 7), false); // added by hand: not counted
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:0"));
    list.Remove(0);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:7"));
    EXPECT_EQ(Value(list, "max_creation_date"), QStringLiteral("date:7"));
}

TEST(PictureList, ARecordCanBeTakenOutWithoutBeingDeleted)
{
    CPictureList list;
    CPictureInfo* const record = list.AddFile(QStringLiteral("a"), 0, false).record;
    const std::unique_ptr<CPictureInfo> taken = list.Remove(0);
    EXPECT_EQ(taken.get(), record);
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.Find(QStringLiteral("a")), -1);
    EXPECT_EQ(list.Remove(0), nullptr);
    EXPECT_EQ(list.Remove(-1), nullptr);
}

TEST(PictureList, ManyAreRemovedAtOnce)
{
    CTestProject test;
    CPictureList list;
    for (int day = 1; day <= 5; ++day) {
        list.AddFile(test.MakePicture(QString::number(day), QDate(2020, 1, day)), 0, false);
    }
    CPictureInfo* const first = list.GetAt(0);
    CPictureInfo* const fourth = list.GetAt(3);
    CPictureInfo* const fifth = list.GetAt(4);
    const auto taken = list.Remove(std::vector<int32_t>{-1, 0, 3, 4, 3, 5});
    ASSERT_EQ(taken.size(), 3u);
    EXPECT_EQ(taken[0].get(), first);
    EXPECT_EQ(taken[1].get(), fourth);
    EXPECT_EQ(taken[2].get(), fifth);
    ASSERT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.Find(first->GetPath()), -1);
    EXPECT_EQ(list.Find(list.GetAt(1)->GetPath()), 1);
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43832.5"));
    EXPECT_EQ(Value(list, "max_creation_date"), QStringLiteral("date:43833.5"));
    EXPECT_TRUE(list.Remove(std::vector<int32_t>{}).empty());
    EXPECT_EQ(list.GetCount(), 2);
}

TEST(PictureList, MovesTowardsTheEndOnly)
{
    const struct {
        int from;
        int to;
        const char* expected;
    } rows[] = {
        {0, 2, "b c a d"}, {0, 3, "b c d a"}, {1, 2, "a c b d"}, {2, 2, "a b c d"},
        {3, 0, "a b c d"}, {2, 1, "a b c d"}, {0, 9, "b c d a"}, {1, -1, "a b c d"},
    };
    for (const auto& row : rows) {
        CPictureList list;
        for (const char* name : {"a", "b", "c", "d"}) {
            list.AddFile(QString::fromUtf8(name), 0, false);
        }
        list.MoveTo(list.GetAt(row.from), row.to);
        EXPECT_EQ(Names(list), QString::fromUtf8(row.expected)) << row.from << " to " << row.to;
    }
}

TEST(PictureList, SwapsTwoEntriesAndIgnoresPlacesOutsideTheList)
{
    CPictureList list;
    for (const char* name : {"a", "b", "c"}) {
        list.AddFile(QString::fromUtf8(name), 0, false);
    }
    list.Swap(0, 2);
    EXPECT_EQ(Names(list), QStringLiteral("c b a"));
    list.Swap(0, 3);
    list.Swap(-1, 0);
    EXPECT_EQ(Names(list), QStringLiteral("c b a"));
    EXPECT_EQ(list.Find(QStringLiteral("a")), 2);
}

TEST(PictureList, RekeyFindsARecordUnderItsNewPath)
{
    CPictureList list;
    auto record = std::make_unique<CMovingRecord>(QStringLiteral("Old"));
    CMovingRecord& moving = *record;
    list.Add(std::move(record), false);
    moving.path = QStringLiteral("New");
    list.Rekey(QStringLiteral("Old"));
    EXPECT_EQ(list.Find(QStringLiteral("New")), 0);
    EXPECT_EQ(list.Find(QStringLiteral("Old")), -1);
    list.Rekey(QStringLiteral("unknown"));
    EXPECT_EQ(list.GetCount(), 1);
}

TEST(PictureList, RekeyDoesNotPushOutTheRecordThatHasThePath)
{
    CPictureList list;
    auto record = std::make_unique<CMovingRecord>(QStringLiteral("old"));
    CMovingRecord& moving = *record;
    list.Add(std::move(record), false);
    list.AddFile(QStringLiteral("taken"), 0, false);
    moving.path = QStringLiteral("taken");
    list.Rekey(QStringLiteral("old"));
    EXPECT_EQ(list.Find(QStringLiteral("taken")), 1);
    EXPECT_EQ(list.Remove(0).get(), &moving);
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list.Find(QStringLiteral("taken")), 0);
}

TEST(PictureList, ClearKeepsTheDates)
{
    CTestProject test;
    CPictureList list;
    list.AddFile(test.MakePicture(QStringLiteral("a.jpg")), 0, false);
    list.SetVariable(QStringLiteral("x"), CVariant(1));
    list.Clear();
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.Find(test.Path(QStringLiteral("pictures/a.jpg"))), -1);
    EXPECT_EQ(Value(list, "x"), QStringLiteral("empty"));
    EXPECT_EQ(Value(list, "min_creation_date"), QStringLiteral("date:43831.5"));
}

TEST(PictureList, AnswersItsPropertiesAndEveryOtherName)
{
    CPictureList list;
    list.AddFile(QStringLiteral("a"), 0, false);
    list.SetVariable(QStringLiteral("Title"), CVariant(QStringLiteral("t")));
    EXPECT_EQ(Value(list, "Images_Count"), QStringLiteral("#1"));
    EXPECT_EQ(Value(list, "tITLE"), QStringLiteral("t"));
    EXPECT_EQ(Value(list, "unknown"), QStringLiteral("empty"));
}

TEST(PictureList, AListByDateKeepsEqualDatesInTheOrderOfArrivalAndIgnoresTheFront)
{
    CPictureList list(CPictureList::Order::ByDate);
    list.Add(Record(QStringLiteral("c"), 3), false);
    list.Add(Record(QStringLiteral("a"), 1), false);
    list.Add(Record(QStringLiteral("b1"), 2), true);
    list.Add(Record(QStringLiteral("b2"), 2), true);
    list.Add(Record(QStringLiteral("b3"), 2), false);
    EXPECT_EQ(Names(list), QStringLiteral("a b1 b2 b3 c"));
}

TEST(PictureList, ARecordWithoutDateBeginsTheSearchForTheOldestAnew)
{
    const struct {
        std::vector<DateValue> dates;
        const char* oldest;
        const char* latest;
    } rows[] = {
        {{7, 0, 9}, "date:9", "date:9"},
        {{7, 0}, "date:0", "date:7"},
        {{0, 7}, "date:7", "date:7"},
        {{9, 7}, "date:7", "date:9"},
    };
    for (const auto& row : rows) {
        CPictureList list;
        list.Add(Record(QStringLiteral("removed")), false);
        for (const DateValue date : row.dates) {
            list.Add(Record(QString::number(date), date), false);
        }
        list.Remove(0);
        EXPECT_EQ(Value(list, "min_creation_date"), QString::fromUtf8(row.oldest));
        EXPECT_EQ(Value(list, "max_creation_date"), QString::fromUtf8(row.latest));
    }
}
