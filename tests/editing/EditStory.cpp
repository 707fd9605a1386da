#include "EditStory.h"

#include <algorithm>
#include <numeric>

#include <QFile>
#include <QRegularExpression>

#include "common/Exceptions.h"
#include "editing/GalleryActs.h"
#include "editing/LookActs.h"
#include "editing/PictureActs.h"
#include "editing/TextActs.h"

namespace {

QByteArray AroundDifference(const QByteArray& bytes, const QByteArray& other)
{
    constexpr qsizetype before = 150;
    constexpr qsizetype shown = 400;
    qsizetype place = 0;
    while (place < bytes.size() && place < other.size() && bytes[place] == other[place]) {
        ++place;
    }
    return bytes.mid(std::max<qsizetype>(place - before, 0), shown);
}

} // namespace

CEditStory::CEditStory(uint32_t seed)
    : random(seed),
      looksAround(Chance(2)),
      history(test.project, [this](const Edited& edited) { heard = edited; })
{
    test.AddStandard();
    test.AddLayout(QStringLiteral("wide"), "<page file=\"index.html\" multipage=\"1\" add_order=\"front\"/>");
    test.AddPage(QStringLiteral("wide"), QStringLiteral("index.html"), 2);
    test.AddStyle(QStringLiteral("red"));
    test.NewGallery(4);
    for (const char* name : {"a.jpg", "b.png", "b.bmp", "Tor.jpg", "Tor_r1.jpg", "A.jpg", "gone.jpg"}) {
        pictures += test.MakePicture(QString::fromLatin1(name));
    }
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(1);
    test.project.FindGallery(3)->AddPicture(pictures[0]);
    QFile::remove(pictures.back());
}

std::string CEditStory::Tell(int acts)
{
    for (int i = 0; i < acts && wrong.empty(); ++i) {
        LookAround();
        if (Chance(8)) {
            Undo();
        } else if (Chance(12)) {
            Redo();
        } else {
            Do();
        }
    }
    for (int round = 0; round < 2 && wrong.empty(); ++round) {
        while (history.GetStack().canUndo() && wrong.empty()) {
            Undo();
        }
        while (history.GetStack().canRedo() && wrong.empty()) {
            Redo();
        }
    }
    return wrong;
}

void CEditStory::LookAround()
{
    if (!looksAround) {
        return;
    }
    if (Chance(3)) {
        test.project.SetCurrentGallery(SomeGallery());
    }
    if (Chance(3)) {
        bool styleChanged = false;
        bool galleryChanged = false;
        test.project.GetCurrentGallery()->FollowLink(Chance(2) ? QStringLiteral("picture1.html")
                                                               : QStringLiteral("index.html"),
                                                     styleChanged, galleryChanged);
    }
}

void CEditStory::Do()
{
    const Act act = SomeAct();
    const QByteArray before = Bytes();
    if (!history.Do(act)) {
        Compare(before, QStringLiteral("nothing was to change by ") + act.name);
        return;
    }
    steps.resize(place);
    steps.push_back({act.name, before, Bytes()});
    if (steps.size() > CEditHistory::StepCount) {
        steps.pop_front();
    }
    place = steps.size();
    if (history.GetStack().index() != static_cast<int>(place)) {
        wrong = "The history has lost count at " + act.name.toStdString();
    }
}

void CEditStory::Undo()
{
    if (history.GetStack().canUndo()) {
        history.GetStack().undo();
        --place;
        Compare(steps[place].before, QStringLiteral("taking back ") + steps[place].name);
    }
}

void CEditStory::Redo()
{
    if (history.GetStack().canRedo()) {
        history.GetStack().redo();
        Compare(steps[place].after, QStringLiteral("doing anew ") + steps[place].name);
        ++place;
    }
}

void CEditStory::Compare(const QByteArray& expected, const QString& what)
{
    const QByteArray found = Bytes();
    if (found != expected && wrong.empty()) {
        wrong = what.toStdString() + "\nexpected: " + AroundDifference(expected, found).toStdString() +
                "\nfound:    " + AroundDifference(found, expected).toStdString();
    }
}

QByteArray CEditStory::Bytes()
{
    test.project.Save(test.ProjectPath());
    const QByteArray bytes = test.scratch.Read(QStringLiteral("site/My.gallery"));
    static const QRegularExpression places(
        QStringLiteral(" (current_gallery_index|template_page|css)=\"[^\"]*\""));
    return looksAround ? QString::fromUtf8(bytes).remove(places).toUtf8() : bytes;
}

// --- Choices. Some of them lead nowhere, as those of a person do that come late.

int32_t CEditStory::SomeGallery()
{
    if (Chance(20)) {
        return 99;
    }
    std::vector<int32_t> indexes;
    for (const auto& [index, gallery] : test.project.GetGalleries()) {
        indexes.push_back(index);
    }
    return indexes[static_cast<size_t>(Below(static_cast<int>(indexes.size())))];
}

int32_t CEditStory::SomePosition(int32_t gallery)
{
    const CGallery* const of = test.project.FindGallery(gallery);
    return of ? Below(of->GetPictures().GetCount() + 1) : 0;
}

std::vector<int32_t> CEditStory::SomePositions(int32_t gallery)
{
    std::vector<int32_t> positions;
    for (int count = Below(4); count >= 0; --count) {
        positions.push_back(SomePosition(gallery));
    }
    std::sort(positions.begin(), positions.end());
    return positions;
}

QStringList CEditStory::SomePaths()
{
    QStringList paths;
    for (int count = Below(3); count >= 0; --count) {
        paths += pictures[Below(static_cast<int>(pictures.size()))];
    }
    return paths;
}

QString CEditStory::SomeWord()
{
    return QStringLiteral("word%1").arg(Below(5));
}

Act CEditStory::SomeAct()
{
    const int32_t gallery = SomeGallery();
    switch (Below(6)) {
    case 0:
        return SomeTextAct(gallery);
    case 1:
        return SomeLookAct(gallery);
    case 2:
    case 3:
        return SomeGalleryAct(gallery);
    default:
        return SomePictureAct(gallery);
    }
}

Act CEditStory::SomePictureAct(int32_t gallery)
{
    switch (Below(11)) {
    case 0:
        return AddPictures(gallery, SomePaths());
    case 1:
        return AddPicturesBefore(gallery, SomePaths(), SomePosition(gallery));
    case 2:
        return RemovePictures(test.project, gallery, SomePositions(gallery));
    case 3:
        return MovePicturesBefore(gallery, SomePositions(gallery), SomePosition(gallery));
    case 4:
        return MovePictureUp(gallery, SomePosition(gallery));
    case 5:
        return MovePictureDown(gallery, SomePosition(gallery));
    case 6:
        return TurnPictures(gallery, SomePositions(gallery), Chance(2));
    case 7:
        return MovePicturesTo(gallery, SomePositions(gallery), SomeGallery());
    case 8:
        return CopyPicturesTo(gallery, SomePositions(gallery), SomeGallery());
    case 9: {
        const QStringList found = SomePaths();
        return RelocateFiles({{.gallery = gallery, .oldPath = pictures.back(), .newPath = found[0]}});
    }
    default: {
        const CGallery* const of = test.project.FindGallery(gallery);
        std::vector<int32_t> order(static_cast<size_t>(of ? of->GetPictures().GetCount() : 3));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), random);
        return SortPictures(gallery, order);
    }
    }
}

Act CEditStory::SomeTextAct(int32_t gallery)
{
    using Owner = TextPlace::Owner;
    const CVariant text = Chance(4) ? CVariant() : CVariant(SomeWord());
    const Owner owner = std::array{Owner::Gallery, Owner::PictureList, Owner::Page,
                                   Owner::Picture}[static_cast<size_t>(Below(4))];
    const TextChange change{.place = {.owner = owner,
                                      .name = SomeWord(),
                                      .page = QStringLiteral("index"),
                                      .pageNumber = Below(3),
                                      .position = SomePosition(gallery)},
                            .text = text};
    switch (Below(3)) {
    case 0:
        return EditText(test.project, gallery, change);
    case 1:
        return EditLink(test.project, gallery, {change, change});
    default: {
        std::vector<TextChange> changes;
        for (const int32_t position : SomePositions(gallery)) {
            changes.push_back({.place = {.owner = Owner::Picture, .name = SomeWord(), .position = position},
                               .text = CVariant(SomeWord())});
        }
        return EditPictureTexts(test.project, gallery, changes);
    }
    }
}

Act CEditStory::SomeLookAct(int32_t gallery)
{
    switch (Below(6)) {
    case 0:
        return ChooseLayout(gallery, Chance(2) ? QStringLiteral("plain.xml") : QStringLiteral("wide.xml"));
    case 1:
        return ChooseStyle(gallery, Chance(2) ? QStringLiteral("red.xml") : QStringLiteral("blue.xml"));
    case 2:
        return ShowElements(gallery, {{SomeWord(), Chance(2)}, {SomeWord(), Chance(2)}});
    case 3:
        return ChangeWatermarks(gallery, {{{{.position = Below(4)}, pictures[0], Below(100)}, {}, {}}});
    case 4: {
        CGalleryContent::TextStamps stamps;
        stamps[static_cast<size_t>(Below(3))].text = SomeWord();
        return ChangeSignatures(gallery, stamps);
    }
    default:
        return ChangeAdvertisements(gallery, QStringLiteral("index.html"), {{SomeWord(), SomeWord()}});
    }
}

Act CEditStory::SomeGalleryAct(int32_t gallery)
{
    switch (Below(6)) {
    case 0:
        return AddGalleryBelow(gallery);
    case 1:
        return InsertGalleryAbove(test.project, gallery);
    case 2:
        return RemoveGalleryAct(test.project, gallery);
    case 3: {
        const int32_t parent = SomeGallery();
        return MoveGalleryTo(test.project, gallery, parent, SomePosition(parent));
    }
    case 4:
        return RenameGallery(gallery, Chance(4) ? QString() : SomeWord());
    default:
        // Not without an end.
        return test.project.GetGalleries().size() < 20 ? DuplicateGalleryAct(test.project, gallery)
                                                       : RemoveGalleryAct(test.project, gallery);
    }
}
