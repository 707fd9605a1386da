#include <gtest/gtest.h>

#include "shell/panes/folder/ViewFolderExternalDispatch.h"
#include "shell/panes/galleries/ViewGalleriesExternalDispatch.h"
#include "shell/web/ExternalDispatchBase.h"
#include "shell_support/ViewWindow.h"

namespace {

class CFolderRecorder final : public CViewFolderExternalDispatchCommands {
public:
    QStringList lines;
    void AddImage(const QString& id) override { lines += QStringLiteral("AddImage ") + id; }
    void AddAllImages() override { lines += QStringLiteral("AddAllImages"); }
    void DragImage(const QString& id, const QString& look) override
    {
        lines += QStringLiteral("DragImage %1 %2").arg(id, look);
    }
    void Select(const QString& ids, const QString& way) override
    {
        lines += QStringLiteral("Select %1 %2").arg(ids, way);
    }
    bool KnowsPage(int, bool isCurrent) const override { return isCurrent; }
    void TakeSelected(const QString& id) override { lines += QStringLiteral("TakeSelected ") + id; }
    void OpenMenu(const QString& id, int32_t x, int32_t y) override
    {
        lines += QStringLiteral("OpenMenu %1 %2 %3").arg(id).arg(x).arg(y);
    }
};

class CGalleriesRecorder final : public CViewGalleriesExternalDispatchCommands {
public:
    bool KnowsPage(int, bool isCurrent) const override { return isCurrent; }
    QStringList lines;
    void AddChildGallery(int32_t id) override { Note("AddChildGallery", id); }
    void DragGallery(int32_t id) override { Note("DragGallery", id); }
    void OpenMenu(int32_t id, int32_t x, int32_t y) override
    {
        lines += QStringLiteral("OpenMenu %1 %2 %3").arg(id).arg(x).arg(y);
    }
    void AddParentGallery(int32_t id) override { Note("AddParentGallery", id); }
    void RemoveGallery(int32_t id) override { Note("RemoveGallery", id); }
    void SetCurrentGallery(int32_t id) override { Note("SetCurrentGallery", id); }

private:
    void Note(const char* name, int32_t id)
    {
        lines += QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(id);
    }
};

struct Call {
    const char* name;
    int dispid;
    QVariantList arguments;
    DispatchResult result;
    const char* line; // null: nothing was called
};

const QVariant null = QVariant::fromValue(nullptr);

void ExpectCalls(CExternalDispatchBase& dispatch, QStringList& lines, const std::vector<Call>& calls)
{
    for (const Call& call : calls) {
        lines.clear();
        std::vector<int> ids;
        EXPECT_EQ(dispatch.GetIDsOfNames({QString::fromLatin1(call.name)}, ids), DispatchResult::Ok);
        ASSERT_EQ(ids, std::vector<int>{call.dispid}) << call.name;
        EXPECT_EQ(dispatch.Invoke(ids[0], DispatchKind::Method, call.arguments), call.result) << call.name;
        EXPECT_EQ(lines.join(QLatin1Char('\n')), QString::fromUtf8(call.line ? call.line : "")) << call.name;
    }
}

const QVariant text = QStringLiteral("a");

} // namespace

TEST(ExternalDispatch, ThePagesViewHasItsMethods)
{
    CCallRecorder recorder;
    CViewPagesExternalDispatch dispatch(recorder);
    const QVariantList one = {QStringLiteral("pic_1")};
    const QVariantList six = {
        QStringLiteral("p.q"), QStringLiteral("Name"), QStringLiteral("<b>"), 7, -8, true};
    const DispatchResult ok = DispatchResult::Ok;
    ExpectCalls(dispatch, recorder.lines,
                {{"ChangeVisibility", 1, one, ok, "ChangeVisibility pic_1"},
                 {"RotateImageRight", 2, one, ok, "RotateImageRight pic_1"},
                 {"RotateImageLeft", 3, one, ok, "RotateImageLeft pic_1"},
                 {"MoveImageUp", 4, one, ok, "MoveImageUp pic_1"},
                 {"MoveImageDown", 5, one, ok, "MoveImageDown pic_1"},
                 {"DeleteImage", 6, one, ok, "DeleteImage pic_1"},
                 {"EditText", 7, six, ok, "EditText p.q|Name|<b>|7|-8|1"},
                 {"EditReference", 8, {text, text, text}, ok, "EditReference a|a|a"},
                 {"FindImage", 10, one, ok, "FindImage pic_1"},
                 {"Select", 11, {text, text}, ok, "Select a a"},
                 {"OpenMenu", 12, {text, 7, -8}, ok, "OpenMenu a|7|-8"}});
}

TEST(ExternalDispatch, TheFolderViewHasItsMethods)
{
    CFolderRecorder recorder;
    CViewFolderExternalDispatch dispatch(recorder);
    ExpectCalls(dispatch, recorder.lines,
                {{"AddImage", 1, {QStringLiteral("i7")}, DispatchResult::Ok, "AddImage i7"},
                 {"AddAllImages", 2, {}, DispatchResult::Ok, "AddAllImages"},
                 {"AddImage", 1, {}, DispatchResult::BadParamCount, nullptr},
                 {"AddImage", 1, {null}, DispatchResult::TypeMismatch, nullptr},
                 {"AddAllImages", 2, {text}, DispatchResult::BadParamCount, nullptr},
                 {"DragImage", 3, {text, text}, DispatchResult::Ok, "DragImage a a"},
                 {"DragImage", 3, {text}, DispatchResult::BadParamCount, nullptr},
                 {"DragImage", 3, {text, null}, DispatchResult::TypeMismatch, nullptr},
                 {"Select", 4, {text, text}, DispatchResult::Ok, "Select a a"},
                 {"Select", 4, {text}, DispatchResult::BadParamCount, nullptr},
                 {"TakeSelected", 5, {text}, DispatchResult::Ok, "TakeSelected a"},
                 {"OpenMenu", 6, {text, 7, -8}, DispatchResult::Ok, "OpenMenu a 7 -8"},
                 {"OpenMenu", 6, {text, 7, text}, DispatchResult::TypeMismatch, nullptr},
                 {"OpenMenu", 6, {text, 7}, DispatchResult::BadParamCount, nullptr}});
}

TEST(ExternalDispatch, TheGalleriesViewHasItsMethods)
{
    CGalleriesRecorder recorder;
    CViewGalleriesExternalDispatch dispatch(recorder);
    const DispatchResult ok = DispatchResult::Ok;
    const DispatchResult mismatch = DispatchResult::TypeMismatch;
    ExpectCalls(dispatch, recorder.lines,
                {{"AddChildGallery", 1, {3}, ok, "AddChildGallery 3"},
                 {"AddParentGallery", 2, {3.0}, ok, "AddParentGallery 3"},
                 {"RemoveGallery", 3, {QStringLiteral("12")}, ok, "RemoveGallery 12"},
                 {"SetCurrentGallery", 4, {-1}, ok, "SetCurrentGallery -1"},
                 {"SetCurrentGallery", 4, {QVariant()}, ok, "SetCurrentGallery 0"},
                 {"SetCurrentGallery", 4, {QStringLiteral("first")}, mismatch, nullptr},
                 {"SetCurrentGallery", 4, {1e12}, mismatch, nullptr},
                 {"SetCurrentGallery", 4, {null}, mismatch, nullptr},
                 {"SetCurrentGallery", 4, {}, DispatchResult::BadParamCount, nullptr},
                 {"SetCurrentGallery", 4, {1, 2}, DispatchResult::BadParamCount, nullptr},
                 {"DragGallery", 5, {4}, ok, "DragGallery 4"},
                 {"DragGallery", 5, {4, 1, 1}, DispatchResult::BadParamCount, nullptr},
                 {"OpenMenu", 6, {4, 100, 60.5}, ok, "OpenMenu 4 100 60"},
                 {"OpenMenu", 6, {4}, DispatchResult::BadParamCount, nullptr},
                 {"OpenMenu", 6, {4, 100, null}, mismatch, nullptr}});
}

TEST(ExternalDispatch, WrongCountsAndTypesCallNothing)
{
    CCallRecorder recorder;
    CViewPagesExternalDispatch dispatch(recorder);
    const DispatchResult count = DispatchResult::BadParamCount;
    const DispatchResult type = DispatchResult::BadVarType;
    const DispatchResult mismatch = DispatchResult::TypeMismatch;
    const QVariant object = QVariantMap{{QStringLiteral("a"), 1}};
    ExpectCalls(dispatch, recorder.lines,
                {{"MoveImageUp", 4, {}, count, nullptr},
                 {"MoveImageUp", 4, {text, text}, count, nullptr},
                 {"MoveImageUp", 4, {object}, type, nullptr},
                 {"MoveImageUp", 4, {null}, type, nullptr},
                 {"MoveImageUp", 4, {QVariantList{text}}, type, nullptr},
                 {"MoveImageUp", 4, {12}, DispatchResult::Ok, "MoveImageUp 12"},
                 {"EditText", 7, {text, text, text, 1, 2}, count, nullptr},
                 {"EditText", 7, {text, text, text, QStringLiteral("left"), 2, true}, mismatch, nullptr},
                 {"EditText", 7, {text, text, text, 1, 2, QStringLiteral("perhaps")}, mismatch, nullptr},
                 {"EditText", 7, {text, text, null, 1, 2, true}, mismatch, nullptr},
                 {"EditText",
                  7,
                  {text, text, text, QStringLiteral("1"), 2.4, QStringLiteral("TRUE")},
                  DispatchResult::Ok,
                  "EditText a|a|a|1|2|1"},
                 {"EditText", 7, {text, text, text, 1, 2, 0}, DispatchResult::Ok, "EditText a|a|a|1|2|0"},
                 {"EditReference", 8, {text, text}, count, nullptr},
                 {"EditReference", 8, {text, text, object}, mismatch, nullptr},
                 {"DragImage", 9, {text, text}, DispatchResult::Ok, "DragImage a a"},
                 {"DragImage", 9, {text}, count, nullptr},
                 {"DragImage", 9, {object, text}, mismatch, nullptr},
                 {"Select", 11, {text}, count, nullptr},
                 {"Select", 11, {text, null}, mismatch, nullptr},
                 {"OpenMenu", 12, {text, 1}, count, nullptr},
                 {"OpenMenu", 12, {text, text, 1}, mismatch, nullptr}});
}

TEST(ExternalDispatch, NamesAreFoundWithoutRegardToCase)
{
    CCallRecorder recorder;
    CViewPagesExternalDispatch dispatch(recorder);
    std::vector<int> ids;
    EXPECT_EQ(dispatch.GetIDsOfNames({QStringLiteral("moveimageup"), QStringLiteral("EDITTEXT")}, ids),
              DispatchResult::Ok);
    EXPECT_EQ(ids, (std::vector<int>{4, 7}));
    EXPECT_EQ(
        dispatch.GetIDsOfNames({QStringLiteral("MoveImage"), QStringLiteral("DeleteImage"), QString()}, ids),
        DispatchResult::UnknownName);
    EXPECT_EQ(ids, (std::vector<int>{-1, 6, -1}));
}

TEST(ExternalDispatch, OnlyMethodsAreCalled)
{
    CCallRecorder recorder;
    CViewPagesExternalDispatch dispatch(recorder);
    EXPECT_EQ(dispatch.Invoke(4, DispatchKind::PropertyGet, {text}), DispatchResult::MemberNotFound);
    EXPECT_EQ(dispatch.Invoke(4, DispatchKind::PropertyPut, {text}), DispatchResult::MemberNotFound);
    for (const int dispid : {-1, 0, 13}) {
        EXPECT_EQ(dispatch.Invoke(dispid, DispatchKind::Method, {text}), DispatchResult::MemberNotFound);
    }
    EXPECT_TRUE(recorder.lines.isEmpty());
}
